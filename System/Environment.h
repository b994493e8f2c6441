// The variables of a process's environment, handed in where a `main` function read them, and the folders that
// they name. Pure; any thread.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

using Environment = std::map<std::string, std::string, std::less<>>;

/// The environment that this process was started with. Only `main` functions ask for it.
Environment processEnvironment();

/// The variable's text; empty when it is not set.
std::string environmentValue(const Environment& environment, std::string_view name);

/// The absolute path that the variable holds; empty when it is not set or holds anything else.
std::filesystem::path environmentPath(const Environment& environment, std::string_view name);

/// "NAME=value" for each variable, as a new process takes it.
std::vector<std::string> environmentList(const Environment& environment);

/// The folder for one kind of a user's files, by the base directory rules that all Linux desktops share: what
/// `variable` says; without it, or when that is no absolute path, the folder `underHome` of the home. Empty
/// when the environment names no home either.
std::filesystem::path baseDirectory(const Environment& environment, std::string_view variable,
                                    std::string_view underHome);

}  // namespace velmora
