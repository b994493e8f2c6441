// One command list on one connection: what a client says, and what it makes of the server's answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TerminalAutomation/Tmux/Direct/TmuxMessageReader.h"
#include "TerminalAutomation/Tmux/Direct/TmuxMessageWriter.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

/// Behaves as the tmux program does whose standard input is a pipe or /dev/null and whose output is
/// collected. Files that the server wants opened are refused. It knows no socket and no time: bytes go in and
/// come out. Used by one thread.
class TmuxConversation {
 public:
  /// `invocation` must outlive the conversation. Throws std::length_error when its command does not fit.
  TmuxConversation(const TmuxInvocation& invocation, const TmuxClientIdentity& identity);

  /// What is to be sent next.
  std::string_view unsent() const { return writer_.unsent(); }
  void sent(std::size_t count);

  /// Whether the server may have the whole command, and so may run it.
  bool commandMayHaveLeft() const { return sent_ >= opening_; }

  /// Where received bytes go.
  std::span<char> space() { return reader_.space(); }
  /// `count` bytes have been put there. Throws TmuxUnexpected; the conversation is done with then.
  void received(std::size_t count);

  /// Whether the server has ended the conversation, or the output is over its limit.
  bool ended() const { return ended_; }

  /// What has come so far; the caller adds how it ended when `ended` is false.
  TmuxAnswer& answer() { return answer_; }

 private:
  struct Sink {
    std::int32_t stream;
    std::string* text;
  };

  void take(const TmuxServerMessage& message);
  void openForWriting(const TmuxServerMessage& message);
  void openForReading(const TmuxServerMessage& message);
  void write(const TmuxServerMessage& message);
  void exit(const TmuxServerMessage& message);
  void countStream();

  const TmuxInvocation& invocation_;
  TmuxMessageWriter writer_;
  TmuxMessageReader reader_;
  std::size_t opening_;  // bytes of the identification and the command
  std::size_t sent_ = 0;
  std::vector<Sink> sinks_;
  int streams_ = 0;
  bool inputUsed_ = false;
  bool outputUsed_ = false;
  bool errorUsed_ = false;
  bool ended_ = false;
  TmuxAnswer answer_{};
};

}  // namespace velmora
