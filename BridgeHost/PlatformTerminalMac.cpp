#include "BridgeHost/PlatformTerminal.h"
#include "TerminalAutomation/Unavailable/UnavailableTerminalAutomation.h"

namespace velmora {

// The bridge has no adapter for Terminal.app yet; it starts and says that the terminal is unavailable.
std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment&, const std::filesystem::path&) {
  return std::make_unique<UnavailableTerminalAutomation>();
}

}  // namespace velmora
