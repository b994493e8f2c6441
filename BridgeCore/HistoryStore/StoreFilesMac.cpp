// The part of StoreFiles that each system answers in its own way.
#include <stdexcept>

#include "BridgeCore/HistoryStore/StoreFiles.h"

namespace velmora {

std::filesystem::path applicationSupportDirectory(const Environment& environment) {
  const auto home = environmentPath(environment, "HOME");
  if (home.empty()) throw std::runtime_error("HOME names no directory");
  return home / "Library" / "Application Support";
}

}  // namespace velmora
