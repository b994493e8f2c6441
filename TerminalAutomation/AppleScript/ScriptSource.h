// Where the text of the script comes from: a resource of the application.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

/// Reads TerminalBridge.applescript from the first of `directories` that holds the resource bundle
/// Velmora_TerminalAutomation.bundle. Empty when that bundle has no such file or its content is not UTF-8.
/// Without any bundle the process stops: the application was not put together.
std::string scriptSourceIn(const std::vector<std::filesystem::path>& directories);

/// The application's own script, read at the first call. Thread-safe. Only on macOS.
const std::string& bundledScriptSource();

}  // namespace velmora
