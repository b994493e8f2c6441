#include "TerminalAutomation/AppleScript/ScriptSource.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "System/Utf8.h"
#include "TerminalAutomation/AppleScript/BrokenContract.h"

namespace velmora {

namespace {

constexpr auto scriptName = "TerminalBridge.applescript";

// The system finds a bundle's resources in either place.
std::filesystem::path resourceIn(const std::filesystem::path& bundle) {
  const auto nested = bundle / "Contents" / "Resources" / scriptName;
  std::error_code ignored;
  return std::filesystem::exists(nested, ignored) ? nested : bundle / scriptName;
}

std::string utf8Content(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string content(std::istreambuf_iterator<char>(file), {});
  return isValidUtf8(content) ? content : std::string();
}

}  // namespace

std::string scriptSourceIn(const std::vector<std::filesystem::path>& directories) {
  for (const auto& directory : directories) {
    if (directory.empty()) continue;  // the system named none; the working directory is no substitute
    const auto bundle = directory / "Velmora_TerminalAutomation.bundle";
    std::error_code ignored;
    if (std::filesystem::is_directory(bundle, ignored)) return utf8Content(resourceIn(bundle));
  }
  brokenContract("unable to find bundle named Velmora_TerminalAutomation");
}

}  // namespace velmora
