// The part of StoreFiles that each system answers in its own way.
#include <stdexcept>

#include "BridgeCore/HistoryStore/StoreFiles.h"

namespace velmora {

std::filesystem::path applicationSupportDirectory(const Environment& environment) {
  auto directory = baseDirectory(environment, "XDG_DATA_HOME", ".local/share");
  if (directory.empty()) throw std::runtime_error("neither XDG_DATA_HOME nor HOME names a directory");
  return directory;
}

}  // namespace velmora
