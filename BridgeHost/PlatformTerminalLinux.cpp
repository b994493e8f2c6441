// A file of its own although short: each system has its adapter.
#include "BridgeHost/PlatformTerminal.h"
#include "TerminalAutomation/Tmux/TmuxTerminal.h"

namespace velmora {

std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment& environment,
                                                         const std::filesystem::path& temporaryDirectory) {
  return makeTmuxTerminal({.environment = environment, .temporaryDirectory = temporaryDirectory});
}

}  // namespace velmora
