#include "BridgeCore/BridgeStatusService.h"

#include <algorithm>

#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

TerminalRuntimeStatus StatusDeadlineGate::wait(std::chrono::nanoseconds deadline) const {
  if (query_.wait_until(std::chrono::steady_clock::now() + deadline) != std::future_status::ready) {
    throw catalogue::statusDeadlineExceeded();
  }
  return query_.get();
}

BridgeStatusService::BridgeStatusService(TerminalAutomating& automation, const BridgeOperationState& state,
                                         SessionRegistry& registry, Clock now,
                                         std::chrono::nanoseconds deadline)
    : automation_(automation),
      state_(state),
      registry_(registry),
      now_(std::move(now)),
      deadline_(deadline) {}

void BridgeStatusService::updateClients(std::vector<ClientIdentity> clients) {
  const MutexLock lock(mutex_);
  clients_ = std::move(clients);
}

void BridgeStatusService::note(const Uuid& requestId, std::optional<StructuredError> error) {
  const MutexLock lock(mutex_);
  lastRequestId_ = requestId;
  lastError_ = std::move(error);
}

BridgeStatus BridgeStatusService::snapshot() {
  try {
    const auto terminal = StatusDeadlineGate(startOrJoinQuery()).wait(deadline_);
    auto status = remembered();
    status.automationPermission = terminal.permission;
    status.windowCount = terminal.windowCount;
    if (!terminal.running) {
      status.terminalState = TerminalState::notRunning;
    } else if (terminal.windowCount < 1) {
      status.terminalState = TerminalState::noWindows;
    } else {
      status.terminalState = TerminalState::available;
      const auto sessions = registry_.currentSessions();
      status.sessionCount = static_cast<std::int64_t>(sessions.size());
      status.controllableSessionCount =
          std::count_if(sessions.begin(), sessions.end(), SessionPermissionService::canSend);
    }
    status.updatedAt = now_();
    return status;
  } catch (...) {
    auto error =
        StructuredErrorMapper::map(std::current_exception(), wireName(ToolName::status), std::nullopt);
    if (error.operation.empty()) error.operation = wireName(ToolName::status);  // the adapter knows no tools
    auto status = remembered();
    status.terminalState = TerminalState::unavailable;
    status.automationPermission = error.code == ErrorCode::automationPermissionDenied
                                      ? AutomationPermission::denied
                                      : AutomationPermission::unknown;
    status.lastError = std::move(error);
    status.updatedAt = now_();
    return status;
  }
}

std::shared_future<TerminalRuntimeStatus> BridgeStatusService::startOrJoinQuery() {
  // The adapter's operations only queue their work, so the lock is short; holding it is what keeps two
  // snapshots from starting two queries.
  const MutexLock lock(mutex_);
  const bool underWay =
      query_.valid() && query_.wait_for(std::chrono::seconds(0)) != std::future_status::ready;
  if (!underWay) query_ = automation_.status().share();
  return query_;
}

BridgeStatus BridgeStatusService::remembered() const {
  BridgeStatus status;
  status.mcpState = state_.current();
  const MutexLock lock(mutex_);
  status.connectedClients = clients_;
  status.lastRequestId = lastRequestId_;
  status.lastError = lastError_;
  return status;
}

}  // namespace velmora
