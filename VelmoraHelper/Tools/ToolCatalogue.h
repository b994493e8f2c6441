// The nine tools as MCP clients see them.
#pragma once

#include <string>

#include "BridgeModels/Json/JsonWriter.h"
#include "BridgeModels/ToolForm.h"
#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

/// Writes the result of `tools/list` as a client of `revision` knows it, the member `tools`, into the object
/// that the caller has begun. Always the same for a form.
void writeToolList(JsonWriter& writer, ProtocolRevision revision, ToolForm form = ToolForm::plain);

/// What a client's model is told about the tools as a whole. Under 2 KB.
std::string toolInstructions(ToolForm form = ToolForm::plain);

}  // namespace velmora
