// A file of its own although short: each system has its place.
#include <stdexcept>

#include "System/ApplicationSupport.h"

namespace velmora {

std::filesystem::path applicationSupportDirectory(const Environment& environment) {
  auto directory = baseDirectory(environment, "XDG_DATA_HOME", ".local/share");
  if (directory.empty()) throw std::runtime_error("neither XDG_DATA_HOME nor HOME names a directory");
  return directory;
}

}  // namespace velmora
