// The variables of a process's environment, handed in where a `main` function read them.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace velmora {

using Environment = std::map<std::string, std::string, std::less<>>;

}  // namespace velmora
