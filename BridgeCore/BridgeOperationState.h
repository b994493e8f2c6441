// The switch that stops all changing operations at once.
#pragma once

#include <optional>
#include <string_view>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/StructuredError.h"
#include "System/Mutex.h"

namespace velmora {

/// Thread-safe.
class BridgeOperationState {
 public:
  explicit BridgeOperationState(MCPState value) : value_(value) {}

  MCPState current() const;
  void set(MCPState value);

  /// Throws the mcpPaused error while paused.
  void requireMutationAllowed(std::string_view operation,
                              const std::optional<SessionReference>& session) const;

 private:
  mutable Mutex mutex_;
  MCPState value_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
