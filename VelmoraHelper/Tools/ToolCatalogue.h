// The nine tools as MCP clients see them.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "BridgeModels/Json/JsonWriter.h"
#include "BridgeModels/ToolName.h"
#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

/// Hints for the client's approval rules. The bridge enforces its own limits whatever they say.
struct ToolAnnotations {
  bool readOnly = false;     ///< Changes nothing in the terminal.
  bool destructive = false;  ///< May undo or destroy something.
  bool idempotent = false;   ///< A second call with the same arguments adds nothing.
  bool openWorld = false;    ///< May reach beyond the terminal.
};

struct ToolDescription {
  ToolName tool;
  std::string_view title;
  std::string_view description;  ///< Under 2 KB: clients cut longer ones.
  ToolAnnotations annotations;
  void (*writeInput)(JsonWriter&);   ///< The schema of the arguments.
  void (*writeOutput)(JsonWriter&);  ///< The schema of the structured content.
  int maximumResultCharacters = 0;   ///< Asks the client to keep a result of this size whole; 0 says nothing.
};

/// Every tool, in the order of ToolName.
std::span<const ToolDescription> toolCatalogue();

/// Whether the tool may change something in the terminal.
bool changesTerminal(ToolName tool);

/// The result of `tools/list` as a client of `revision` knows it, as JSON text. Always the same.
std::string toolListJson(ProtocolRevision revision);

/// What a client's model is told about the tools as a whole. Under 2 KB.
std::string_view toolInstructions();

}  // namespace velmora
