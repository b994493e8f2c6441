#include <stdexcept>

#include "BridgeCore/HistoryStore/ApplicationSupportDirectory.h"

namespace velmora {

std::filesystem::path applicationSupportDirectory(const Environment& environment) {
  const auto home = environment.find("HOME");
  if (home == environment.end() || !home->second.starts_with('/')) {
    throw std::runtime_error("HOME names no directory");
  }
  return std::filesystem::path(home->second) / "Library" / "Application Support";
}

}  // namespace velmora
