// What the AppleScript adapter is built from; tests put their own in place.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "BridgeModels/Uuid.h"
#include "TerminalAutomation/AppleScript/ProgramRunner.h"
#include "TerminalAutomation/AppleScript/ScriptHost.h"

namespace velmora {

struct AppleScriptParts {
  std::unique_ptr<ScriptHost> script;
  /// Whether an application with this bundle identifier runs. Called on the adapter's thread.
  std::function<bool(const std::string& bundleIdentifier)> isRunning;
  std::unique_ptr<ProgramRunner> programs;
  std::filesystem::path temporaryDirectory;  ///< Pictures go to Velmora/ in it.
  UuidSource uuid = Uuid::random;
};

}  // namespace velmora
