// A client of one tmux server that needs no program: connects, makes sure who listens, and runs one command
// list a connection, as each start of the tmux program does.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <filesystem>
#include <optional>
#include <string>

#include "System/FileDescriptor.h"
#include "TerminalAutomation/Tmux/Direct/TmuxExchange.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

struct TmuxDirectResult {
  enum class Reach {
    spoken,       ///< The connection was made, or the deadline or a cancel came before: `exchange` holds.
    noServer,     ///< Nobody listens, or the path is no socket's.
    otherUser,    ///< Who listens runs as another user. Nothing was sent.
    otherServer,  ///< Who listens is not the process that was named. Nothing was sent.
  };

  Reach reach;
  TmuxExchangeResult exchange{};
};

/// Thread-safe; calls run side by side, each on its own connection.
class TmuxDirectClient {
 public:
  /// `terminal` is $TERM. Throws std::system_error when there are no descriptors left.
  TmuxDirectClient(std::filesystem::path socket, std::string terminal, std::string homeFolder);

  /// Runs the invocation, at the named process only. Its command must fit in a message.
  TmuxDirectResult ask(const TmuxInvocation& invocation, pid_t server);

  /// Ends the calls under way with `cancelled`, and every later one.
  void cancel() noexcept;

 private:
  FileDescriptor connect(const TmuxInvocation& invocation, std::optional<TmuxDirectResult>& otherwise) const;
  TmuxClientIdentity identity() const;

  const std::filesystem::path socket_;
  const std::string terminal_;
  const std::string homeFolder_;
  const Pipe cancelPipe_ = openPipe();
  std::atomic<bool> cancelled_ = false;
};

}  // namespace velmora
