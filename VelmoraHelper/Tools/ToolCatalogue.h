// The nine tools as MCP clients see them.
#pragma once

#include <string>
#include <string_view>

#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

/// The result of `tools/list` as a client of `revision` knows it, as JSON text. Always the same.
std::string toolListJson(ProtocolRevision revision);

/// What a client's model is told about the tools as a whole. Under 2 KB.
std::string_view toolInstructions();

}  // namespace velmora
