// `velmora watch`: what agents ask, as it happens, on a screen or a line a request.
#pragma once

#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Goes on until the bridge ends, which is a failure, or the program is ended. With `json` each line is a
/// JSON object, as `velmora history --json` has it.
ExitStatus watchRequests(const CommandContext& context, bool json);

/// The screen, which is another program's. Returns only when that cannot be started.
ExitStatus showWatchScreen(const CommandContext& context);

/// The program that draws the screen: beside `runningFile`, or where packages put what nobody calls by name.
/// Nothing when there is none.
std::optional<std::filesystem::path> watchScreenProgram(const std::filesystem::path& runningFile);

/// Runs that program in this one's place, without arguments; why it cannot.
std::string becomeWatchScreen(const std::filesystem::path& runningFile);

}  // namespace velmora
