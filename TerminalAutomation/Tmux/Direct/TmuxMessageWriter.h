// Writes what a client says to a tmux server.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalAutomation/Tmux/Direct/TmuxMessage.h"

namespace velmora {

/// What a client tells of itself. The tmux program says the same when none of its streams is a terminal.
struct TmuxClientIdentity {
  pid_t process;
  std::string terminal{};  ///< $TERM
  std::string folder{};    ///< Where commands without a folder of their own start.
};

/// Collects the bytes that are to be sent. A server up to 3.6 ends, and every session with it, over a message
/// of the wrong size, a text without its end, a client without a tty name, a wrong number of arguments, or an
/// identification that goes on after its end. So there is one function a message, nothing else writes bytes,
/// and no input changes a message's shape. Used by one thread.
class TmuxMessageWriter {
 public:
  explicit TmuxMessageWriter(pid_t process) : process_(static_cast<std::uint32_t>(process)) {}

  /// Goes first, once. Texts end at their first NUL, and where the message is full.
  void identify(const TmuxClientIdentity& identity);

  /// Whether `arguments` fit in one message. The server takes no longer command list.
  static bool commandFits(const std::vector<std::string>& arguments);

  /// Goes second, once: a command list, with ";" as an argument between two commands. Each argument ends at
  /// its first NUL, as a program's does. Throws std::length_error unless `commandFits`.
  void command(const std::vector<std::string>& arguments);

  /// All of the input for a stream that the server wants to read, and its end.
  void input(std::int32_t stream, std::string_view bytes);

  /// The end of a stream that the server wants to read, with an errno or 0.
  void readDone(std::int32_t stream, std::int32_t error);

  /// The answer to a stream that the server wants to write to, with an errno or 0.
  void writeReady(std::int32_t stream, std::int32_t error);

  /// What was written here and not yet taken away by `sent`.
  std::string_view unsent() const { return std::string_view(bytes_).substr(sent_); }
  void sent(std::size_t count);

 private:
  void add(TmuxMessageType type, std::string_view body);
  void addNumber(TmuxMessageType type, std::int32_t number);
  void addText(TmuxMessageType type, std::string_view text);
  void addPair(TmuxMessageType type, std::int32_t first, std::int32_t second);

  const std::uint32_t process_;
  std::string bytes_;
  std::size_t sent_ = 0;
};

}  // namespace velmora
