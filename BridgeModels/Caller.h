// Whoever waits for the answer to a request. A header alone: it is a value.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace velmora {

/// How long a call may take: clients give up after a minute, the helper a little before.
inline constexpr std::chrono::seconds longestCall{46};

/// Handed along with a request, from the socket to the terminal, so that nothing is begun for a caller who
/// has given up. The default is one who calls now and stays.
struct Caller {
  /// When the request arrived; what is done for it has to end within so long of that.
  std::chrono::steady_clock::time_point since = std::chrono::steady_clock::now();

  /// Whether nobody waits for the answer any more. Must be callable on any thread while the request is under
  /// way.
  std::function<bool()> hasLeft = [] { return false; };

  /// Whether the caller asks for the extended form, with what only that has in the answers.
  bool extended = false;

  /// Sends a message to the caller before the answer, on the thread that the call came on; empty where
  /// nothing can be. Never throws.
  std::function<void(const std::string& message)> send{};

  /// Hears the terminal's last line about once a second while the call waits; empty for a caller who did not
  /// ask. Called on the thread that the call came on; never throws.
  std::function<void(const std::string& lastLine)> hearLastLine{};

  /// The same, with the deadline of what is done next counting from now.
  Caller asOfNow() const {
    Caller now = *this;
    now.since = std::chrono::steady_clock::now();
    return now;
  }
};

}  // namespace velmora
