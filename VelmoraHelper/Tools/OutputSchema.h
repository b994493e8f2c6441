// The JSON Schema of a tool's structured content: the envelope with the tool's payload. Failures have the
// same shape without the payload, because clients check them against the schema too.
#pragma once

#include "BridgeModels/ToolPayloads.h"
#include "VelmoraHelper/Tools/JsonSchema.h"

namespace velmora {

template <class Payload>
void writeOutputSchema(JsonWriter& writer) {
  writer.beginObject();
  writeRecordSchema<ToolResult<Payload>>(writer);
  writer.endObject();
}

}  // namespace velmora
