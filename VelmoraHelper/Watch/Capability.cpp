// Apart from what draws: the signals that end the program ask too.
#include "VelmoraHelper/Watch/Capability.h"

#include <curses.h>

#include <cstdint>

namespace velmora {

const char* capability(const char* name) {
  // The library's older headers take it as text that may change.
  const auto* value = ::tigetstr(const_cast<char*>(name));
  return reinterpret_cast<std::intptr_t>(value) == -1 ? nullptr : value;
}

}  // namespace velmora
