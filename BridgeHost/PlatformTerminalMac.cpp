// A file of its own although short: each system has its adapter.
#include "BridgeHost/PlatformTerminal.h"
#include "MacPlatform/Application.h"
#include "TerminalAutomation/AppleScript/AppleScriptExecutor.h"
#include "TerminalAutomation/AppleScript/ChildScriptHost.h"
#include "TerminalAutomation/AppleScript/ScriptSource.h"

namespace velmora {

namespace {

/// In the application's bundle, or beside a program that has none.
std::filesystem::path scriptHostProgram() {
  constexpr auto name = "velmora-script-host";
  const auto folder = mac::applicationBundlePath();
  const auto inBundle = folder / "Contents" / "Helpers" / name;
  return std::filesystem::exists(inBundle) ? inBundle : folder / name;
}

}  // namespace

std::unique_ptr<TerminalAutomating> makePlatformTerminal(const Environment& environment,
                                                         const std::filesystem::path& temporaryDirectory,
                                                         const Log& log) {
  return std::make_unique<AppleScriptExecutor>(
      AppleScriptParts{.script = std::make_unique<ChildScriptHost>(scriptHostProgram(), environment, log),
                       .isRunning = mac::isApplicationRunning,
                       .start = mac::startInBackground,
                       .screenWindows = systemScreenWindows,
                       .programs = std::make_unique<SystemProgramRunner>(environment),
                       .temporaryDirectory = temporaryDirectory},
      bundledScriptSource());
}

}  // namespace velmora
