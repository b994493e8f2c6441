// Apart from the Linux one, which follows the rules of desktops there.
#include "ClientSetup/ApplicationConfig.h"

namespace velmora {

std::filesystem::path applicationConfigDirectory(const Environment& environment) {
  const auto home = environmentPath(environment, "HOME");
  return home.empty() ? home : home / "Library/Application Support";
}

}  // namespace velmora
