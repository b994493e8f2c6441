#include "BridgeCore/BridgeOperationState.h"

#include "BridgeCore/ErrorCatalogue.h"

namespace velmora {

MCPState BridgeOperationState::current() const {
  const MutexLock lock(mutex_);
  return value_;
}

void BridgeOperationState::set(MCPState value) {
  const MutexLock lock(mutex_);
  value_ = value;
}

void BridgeOperationState::requireMutationAllowed(std::string_view operation,
                                                  const std::optional<SessionReference>& session) const {
  if (current() == MCPState::paused) throw catalogue::mcpPaused(operation, session);
}

}  // namespace velmora
