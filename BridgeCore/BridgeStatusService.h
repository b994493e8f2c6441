// Reports the state of the bridge and of the terminal, and remembers the last request and the last error.
#pragma once

#include <chrono>
#include <future>
#include <optional>
#include <vector>

#include "BridgeCore/BridgeOperationState.h"
#include "BridgeCore/SessionRegistry.h"
#include "BridgeModels/BridgeStatus.h"
#include "System/Mutex.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Lets the first of two events, the terminal's answer or the deadline, decide a status request. Serves one
/// request; any number of gates may stand on one query. A late answer changes nothing: it stays in the query,
/// where nobody looks. Not thread-safe.
class StatusDeadlineGate {
 public:
  explicit StatusDeadlineGate(std::shared_future<TerminalRuntimeStatus> query) : query_(std::move(query)) {}

  /// Blocks for `deadline` (monotonic) at most. Throws the query's error, or the terminalNotAvailable error
  /// when the deadline came first.
  TerminalRuntimeStatus wait(std::chrono::nanoseconds deadline) const;

 private:
  std::shared_future<TerminalRuntimeStatus> query_;
};

/// Thread-safe. A hung terminal costs each caller the deadline at most and never more than one query: a
/// snapshot that comes while a query is under way waits on that one.
class BridgeStatusService {
 public:
  BridgeStatusService(TerminalAutomating& automation, const BridgeOperationState& state,
                      SessionRegistry& registry, Clock now, std::chrono::nanoseconds deadline);

  /// Replaces the whole list of connected clients.
  void updateClients(std::vector<ClientIdentity> clients);

  /// Remembers the last request; no error clears the last one.
  void note(const Uuid& requestId, std::optional<StructuredError> error);

  /// Never throws for the terminal's sake: every failure, also the deadline, is a snapshot whose terminal is
  /// unavailable and whose lastError says why.
  BridgeStatus snapshot();

  std::chrono::nanoseconds deadline() const { return deadline_; }

 private:
  std::shared_future<TerminalRuntimeStatus> startOrJoinQuery();
  BridgeStatus remembered() const;

  TerminalAutomating& automation_;
  const BridgeOperationState& state_;
  SessionRegistry& registry_;
  const Clock now_;
  const std::chrono::nanoseconds deadline_;

  mutable Mutex mutex_;
  std::vector<ClientIdentity> clients_ VELMORA_GUARDED_BY(mutex_);
  std::optional<Uuid> lastRequestId_ VELMORA_GUARDED_BY(mutex_);
  std::optional<StructuredError> lastError_ VELMORA_GUARDED_BY(mutex_);
  std::shared_future<TerminalRuntimeStatus> query_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
