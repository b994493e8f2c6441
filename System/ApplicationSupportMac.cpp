// A file of its own although short: each system has its place.
#include <stdexcept>

#include "System/ApplicationSupport.h"

namespace velmora {

std::filesystem::path applicationSupportDirectory(const Environment& environment) {
  const auto home = environmentPath(environment, "HOME");
  if (home.empty()) throw std::runtime_error("HOME names no directory");
  return home / "Library" / "Application Support";
}

}  // namespace velmora
