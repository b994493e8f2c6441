// The nine tools as MCP clients see them.
#pragma once

#include <string_view>

#include "BridgeModels/Json/JsonWriter.h"
#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

/// Writes the result of `tools/list` as a client of `revision` knows it, the member `tools`, into the object
/// that the caller has begun. Always the same.
void writeToolList(JsonWriter& writer, ProtocolRevision revision);

/// What a client's model is told about the tools as a whole. Under 2 KB.
std::string_view toolInstructions();

}  // namespace velmora
