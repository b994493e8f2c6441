#include "TerminalAutomation/AppleScript/BrokenContract.h"

#include <cstdio>
#include <cstdlib>

namespace velmora {

void brokenContract(std::string_view reason) noexcept {
  std::fprintf(stderr, "Velmora stops: %.*s\n", static_cast<int>(reason.size()), reason.data());
  std::abort();
}

}  // namespace velmora
