// A file of its own although short: each system has its adapter.
#include "BridgeHost/PlatformTerminal.h"
#include "MacPlatform/Application.h"
#include "TerminalAutomation/AppleScript/AppleScriptExecutor.h"
#include "TerminalAutomation/AppleScript/ScriptSource.h"

namespace velmora {

std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment& environment,
                                                         const std::filesystem::path& temporaryDirectory,
                                                         const Log& /*log*/) {
  return std::make_unique<AppleScriptExecutor>(
      AppleScriptParts{.script = systemScriptHost(),
                       .isRunning = mac::isApplicationRunning,
                       .programs = std::make_unique<SystemProgramRunner>(environment),
                       .temporaryDirectory = temporaryDirectory},
      bundledScriptSource());
}

}  // namespace velmora
