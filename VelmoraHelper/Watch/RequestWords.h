// A request's properties in few words, for the lines of `velmora watch`.
#pragma once

#include <string>
#include <string_view>

#include "BridgeModels/MCPRequestRecord.h"
#include "VelmoraHelper/Watch/WatchScreen.h"

namespace velmora {

std::string localClock(Date date);  ///< "12:03:04".
std::string outcomeOf(const MCPRequestRecord& request);
WatchStyle styleOf(const MCPRequestRecord& request);
std::string durationOf(const MCPRequestRecord& request);  ///< "12 ms", "1.2 s", "250 s"; 6 columns at most.
std::string_view shortName(ToolName tool);                ///< In 7 columns at most.
std::string_view nameOf(ToolName tool);                   ///< The wire name without what all begin with.

/// What was typed, in one line: a command's first, with its error's code before it if there is one and it is
/// wanted.
std::string commandLineOf(const MCPRequestRecord& request, bool withError);

/// What a filter looks at.
std::string searchedText(const MCPRequestRecord& request);

}  // namespace velmora
