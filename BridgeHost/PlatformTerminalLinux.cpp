#include "BridgeHost/PlatformTerminal.h"
#include "TerminalAutomation/Tmux/TmuxExecutor.h"

namespace velmora {

std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment& environment,
                                                         const std::filesystem::path& temporaryDirectory) {
  return std::make_unique<TmuxExecutor>(
      TmuxExecutorOptions{.environment = environment, .temporaryDirectory = temporaryDirectory});
}

}  // namespace velmora
