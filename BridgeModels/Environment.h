// The variables of a process's environment, handed in where a `main` function read them.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace velmora {

using Environment = std::map<std::string, std::string, std::less<>>;

/// The environment that this process was started with. Only `main` functions ask for it.
Environment processEnvironment();

}  // namespace velmora
