// The application's answer as the result of an MCP tool call.
#pragma once

#include <cstddef>

#include "BridgeModels/Json/JsonWriter.h"
#include "VelmoraHelper/Bridge/BridgeMessages.h"
#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

/// Writes the members of a tool call's result into the object that the caller has begun: the answer's
/// envelope as text and, where the revision has it, as structured content; before the text of a failure, a
/// line in words; of a capture, the picture as a link and, when the file has at most `largestInlinePicture`
/// bytes, inline. The payload's dates are written for people, and what it holds beyond the tool's payload is
/// passed on.
void writeToolResult(JsonWriter& writer, ToolName tool, const BridgeAnswer& answer, ProtocolRevision revision,
                     std::size_t largestInlinePicture);

}  // namespace velmora
