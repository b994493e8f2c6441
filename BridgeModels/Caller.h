// Whoever waits for the answer to a request. A header alone: it is a value.
#pragma once

#include <chrono>
#include <functional>

namespace velmora {

/// Handed along with a request, from the socket to the terminal, so that nothing is begun for a caller who
/// has given up. The default is one who calls now and stays.
struct Caller {
  /// When the request arrived; what is done for it has to end within so long of that.
  std::chrono::steady_clock::time_point since = std::chrono::steady_clock::now();

  /// Whether nobody waits for the answer any more. Must be callable on any thread while the request is under
  /// way.
  std::function<bool()> hasLeft = [] { return false; };
};

}  // namespace velmora
