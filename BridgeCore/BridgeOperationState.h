// The switch that stops all changing operations at once.
#pragma once

#include <optional>
#include <string_view>

#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeModels/BridgeEnums.h"
#include "System/Mutex.h"

namespace velmora {

/// Thread-safe.
class BridgeOperationState {
 public:
  explicit BridgeOperationState(MCPState value) : value_(value) {}

  MCPState current() const {
    const MutexLock lock(mutex_);
    return value_;
  }
  void set(MCPState value) {
    const MutexLock lock(mutex_);
    value_ = value;
  }

  /// Throws the mcpPaused error while paused.
  void requireMutationAllowed(std::string_view operation,
                              const std::optional<SessionReference>& session) const {
    if (current() == MCPState::paused) throw catalogue::mcpPaused(operation, session);
  }

 private:
  mutable Mutex mutex_;
  MCPState value_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
