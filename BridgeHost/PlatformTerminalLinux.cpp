#include "BridgeHost/PlatformTerminal.h"
#include "TerminalAutomation/Tmux/TmuxExecutor.h"

namespace velmora {

std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment& environment,
                                                         const std::filesystem::path& temporaryDirectory) {
  const auto home = environment.find("HOME");
  return std::make_unique<TmuxExecutor>(
      TmuxExecutorOptions{.environment = environment,
                          .temporaryDirectory = temporaryDirectory,
                          .homeDirectory = home == environment.end() ? "/" : home->second});
}

}  // namespace velmora
