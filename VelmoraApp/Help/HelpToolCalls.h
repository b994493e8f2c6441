// The example calls that the help shows.
#pragma once

#include <string>
#include <string_view>

#include "BridgeModels/ToolName.h"

namespace velmora {

/// Stands where a session's id has to be put.
inline constexpr std::string_view sessionIdPlaceholder = "SESSION_ID_FROM_CREATE_RESPONSE";

/// The call as JSON text, an object of `name` and `arguments`. Throws std::invalid_argument for a tool that
/// the help shows no call of.
std::string exampleToolCall(ToolName tool);

}  // namespace velmora
