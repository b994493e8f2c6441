// Lets the first of two events, the terminal's answer or the deadline, decide a status request.
#pragma once

#include <chrono>
#include <future>

#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Serves one request; any number of gates may stand on one query. A late answer changes nothing: it stays in
/// the query, where nobody looks. Not thread-safe.
class StatusDeadlineGate {
 public:
  explicit StatusDeadlineGate(std::shared_future<TerminalRuntimeStatus> query) : query_(std::move(query)) {}

  /// Blocks for `deadline` (monotonic) at most. Throws the query's error, or the terminalNotAvailable error
  /// when the deadline came first.
  TerminalRuntimeStatus wait(std::chrono::nanoseconds deadline) const;

 private:
  std::shared_future<TerminalRuntimeStatus> query_;
};

}  // namespace velmora
