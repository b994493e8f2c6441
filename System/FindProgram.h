// Where a program's file is.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "System/Environment.h"

namespace velmora {

/// The program in a folder of $PATH, or in the folders where package managers put it (a program started by
/// a desktop or an MCP client has a short $PATH). Nothing when it is in none. Any thread.
std::optional<std::filesystem::path> findProgram(const std::string& name, const Environment& environment);

}  // namespace velmora
