#include <stdexcept>

#include "BridgeCore/HistoryStore/ApplicationSupportDirectory.h"

namespace velmora {

namespace {

// The variable's value when it is an absolute path: the base directory rules ignore any other.
std::filesystem::path absolutePath(const Environment& environment, const char* name) {
  const auto found = environment.find(name);
  if (found == environment.end() || !found->second.starts_with('/')) return {};
  return found->second;
}

}  // namespace

std::filesystem::path applicationSupportDirectory(const Environment& environment) {
  auto dataHome = absolutePath(environment, "XDG_DATA_HOME");
  if (!dataHome.empty()) return dataHome;
  const auto home = absolutePath(environment, "HOME");
  if (home.empty()) throw std::runtime_error("neither XDG_DATA_HOME nor HOME names a directory");
  return home / ".local" / "share";
}

}  // namespace velmora
