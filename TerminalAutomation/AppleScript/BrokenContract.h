// The end of a process that was put together wrongly.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace velmora {

/// Writes `reason` to stderr and stops the process. For promises between parts of this program (the script's
/// replies, the sizes of ids), never for what a user or the system may do.
[[noreturn]] inline void brokenContract(std::string_view reason) noexcept {
  std::fprintf(stderr, "Velmora stops: %.*s\n", static_cast<int>(reason.size()), reason.data());
  std::abort();
}

}  // namespace velmora
