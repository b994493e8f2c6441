// Where the settings and the history are kept.
#pragma once

#include <filesystem>

#include "System/Environment.h"

namespace velmora {

/// The user's directory for application data, from the environment alone. Throws std::runtime_error when
/// the environment names no home.
std::filesystem::path applicationSupportDirectory(const Environment& environment);

inline std::filesystem::path defaultSettingsFile(const Environment& environment) {
  return applicationSupportDirectory(environment) / "Velmora" / "settings.json";
}

inline std::filesystem::path defaultHistoryFile(const Environment& environment) {
  return applicationSupportDirectory(environment) / "Velmora" / "history.json";
}

}  // namespace velmora
