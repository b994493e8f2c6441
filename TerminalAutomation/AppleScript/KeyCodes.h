// The keys as macOS numbers them.
#pragma once

#include <cstdint>

#include "BridgeModels/ToolInputs.h"

namespace velmora {

/// The virtual key code (kVK_..., HIToolbox/Events.h) that System Events presses for `key`.
std::int32_t virtualKeyCode(TerminalKey key);

}  // namespace velmora
