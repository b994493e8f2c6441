// `velmora call TOOL [JSON]`: one tool call from the command line.
#pragma once

#include <chrono>
#include <string>

#include "BridgeModels/StructuredError.h"
#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Calls the tool with the arguments that `json` holds ("-": those on standard input) and prints the payload
/// as JSON. A refusal is explained on `err`.
ExitStatus callTool(const CommandContext& context, const std::string& tool, const std::string& json);

/// The answer to a call of the tool; one that does not come in time is an error too.
BridgeAnswer answerOf(const CommandContext& context, ToolName tool, JsonMembers arguments,
                      std::chrono::seconds deadline);

/// The error of an answer that is not `ok`.
StructuredError errorOf(const BridgeAnswer& answer);

/// Tells the user what is wrong and what to do about it.
void explain(const CommandContext& context, const StructuredError& error);

}  // namespace velmora
