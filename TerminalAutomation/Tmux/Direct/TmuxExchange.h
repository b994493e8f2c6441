// Leads one conversation with a tmux server over a connection.
#pragma once

#include <optional>
#include <string>

#include "System/FileDescriptor.h"
#include "TerminalAutomation/Tmux/Direct/TmuxMessageWriter.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

struct TmuxExchangeResult {
  TmuxAnswer answer{};
  /// Whether the server may have run the command. When it is false the command can be given again without
  /// doing anything twice.
  bool commandMayHaveLeft = false;
  /// What the server did that no server should: the words for the log. `answer` then says that the server was
  /// lost.
  std::optional<std::string> surprise{};
};

/// Runs the invocation over `server`, a connection that does not block and that nothing else uses. Ends at
/// the deadline, and when `cancel` can be read; what has not been handed over of the standard input by then
/// never is.
TmuxExchangeResult exchangeWithTmux(const FileDescriptor& server, const FileDescriptor& cancel,
                                    const TmuxInvocation& invocation, const TmuxClientIdentity& identity);

}  // namespace velmora
