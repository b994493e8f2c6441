// Reads what a tmux server says to a client without a terminal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "TerminalAutomation/Tmux/Direct/TmuxMessage.h"

namespace velmora {

/// The server said what none of a tested version says to such a client. `what` says it in a few words.
class TmuxUnexpected : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One message, taken apart. The body's leading numbers that its type does not have are 0.
struct TmuxServerMessage {
  TmuxMessageType type;
  std::int32_t stream = 0;  ///< For `exit` and `shutdown` the exit status instead.
  std::int32_t descriptor =
      0;                    ///< readOpen, writeOpen: which of the client's streams is meant, -1 for a file.
  std::string_view rest{};  ///< write: the bytes. exit, shutdown: the server's last words, without the NUL.
};

/// Finds the messages in a stream of bytes, however it was cut, and lets through only the types and the
/// shapes that it knows. It holds less than one message and what was received last. After a TmuxUnexpected it
/// is done with. Used by one thread.
class TmuxMessageReader {
 public:
  TmuxMessageReader();

  /// Where the next bytes go; never empty once `next` has returned nothing. Ends the life of the last
  /// message.
  std::span<char> space();
  /// `count` bytes have been put there.
  void received(std::size_t count) { end_ += count; }

  /// The next whole message; nothing when there is none yet. Throws TmuxUnexpected.
  std::optional<TmuxServerMessage> next();

 private:
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace velmora
