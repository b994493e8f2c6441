// Apart from the macOS one, which names another folder.
#include "ClientSetup/ApplicationConfig.h"

namespace velmora {

std::filesystem::path applicationConfigDirectory(const Environment& environment) {
  return baseDirectory(environment, "XDG_CONFIG_HOME", ".config");
}

}  // namespace velmora
