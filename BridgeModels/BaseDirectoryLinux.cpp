#include "BridgeModels/BaseDirectory.h"

namespace velmora {

namespace {

std::filesystem::path absolutePath(const Environment& environment, const char* name) {
  const auto found = environment.find(name);
  if (found == environment.end() || !found->second.starts_with('/')) return {};
  return found->second;
}

}  // namespace

std::filesystem::path baseDirectory(const Environment& environment, const char* variable,
                                    const char* underHome) {
  auto stated = absolutePath(environment, variable);
  if (!stated.empty()) return stated;
  const auto home = absolutePath(environment, "HOME");
  return home.empty() ? home : home / underHome;
}

}  // namespace velmora
