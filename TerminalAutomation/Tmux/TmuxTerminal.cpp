#include "TerminalAutomation/Tmux/TmuxTerminal.h"

#include <utility>

#include "TerminalAutomation/Tmux/ContainedShell.h"
#include "TerminalAutomation/Tmux/Picture/PictureModule.h"
#include "TerminalAutomation/Tmux/ServerScope.h"
#include "TerminalAutomation/Tmux/TmuxOperations.h"

namespace velmora {

TmuxParts TmuxParts::ofSystem(const TmuxOptions& options) {
  auto transport =
      makeTmuxTransport(options.transport, options.environment, options.socketPath, options.program,
                        options.log, runsInService(options.controlGroups.value_or(ownControlGroups())));
  const ContainedFrom apart{.tmuxSocket = transport->socketPath(), .folders = options.ownFolders};
  return {.transport = std::move(transport),
          .processes = systemProcessTable(),
          .desktop = std::make_unique<SystemDesktopTerminal>(options.environment),
          .drawPicture = [](const PaneScreen& screen) { return drawWithModule(pictureModuleFile(), screen); },
          .containedCommand = [environment = options.environment, apart](
                                  auto deadline) { return containedShell(environment, apart, deadline); }};
}

std::unique_ptr<SerialTerminal> makeTmuxTerminal(TmuxOptions options, TmuxParts parts) {
  const TerminalDeadlines deadlines = options.deadlines;
  return std::make_unique<SerialTerminal>(
      std::make_unique<TmuxOperations>(std::move(options), std::move(parts)), deadlines);
}

std::unique_ptr<SerialTerminal> makeTmuxTerminal(const TmuxOptions& options) {
  return makeTmuxTerminal(options, TmuxParts::ofSystem(options));
}

}  // namespace velmora
