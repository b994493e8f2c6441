// A file of its own although short: each system has its adapter.
#include "BridgeHost/PlatformTerminal.h"
#include "TerminalAutomation/Tmux/TmuxTerminal.h"

namespace velmora {

std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment& environment,
                                                         const std::filesystem::path& temporaryDirectory,
                                                         const Log& log) {
  return makeTmuxTerminal({.environment = environment, .log = log, .temporaryDirectory = temporaryDirectory});
}

}  // namespace velmora
