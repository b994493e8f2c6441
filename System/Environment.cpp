#include "System/Environment.h"

#include <unistd.h>

extern char** environ;  // NOLINT(readability-redundant-declaration): not every system's unistd.h declares it

namespace velmora {

Environment processEnvironment() {
  Environment environment;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view text(*entry);
    const auto equals = text.find('=');
    if (equals != std::string_view::npos)
      environment.emplace(text.substr(0, equals), text.substr(equals + 1));
  }
  return environment;
}

std::string environmentValue(const Environment& environment, std::string_view name) {
  const auto found = environment.find(name);
  return found == environment.end() ? std::string() : found->second;
}

std::filesystem::path environmentPath(const Environment& environment, std::string_view name) {
  std::filesystem::path path = environmentValue(environment, name);
  return path.is_absolute() ? path : std::filesystem::path();
}

std::vector<std::string> environmentList(const Environment& environment) {
  std::vector<std::string> list;
  list.reserve(environment.size());
  for (const auto& [name, value] : environment) list.push_back(name + "=" + value);
  return list;
}

std::filesystem::path baseDirectory(const Environment& environment, std::string_view variable,
                                    std::string_view underHome) {
  auto stated = environmentPath(environment, variable);
  if (!stated.empty()) return stated;
  const auto home = environmentPath(environment, "HOME");
  return home.empty() ? home : home / underHome;
}

}  // namespace velmora
