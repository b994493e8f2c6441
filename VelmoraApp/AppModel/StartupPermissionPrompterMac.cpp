#include "MacPlatform/PermissionPrompts.h"
#include "TerminalAutomation/AppleScript/AppleScriptExecutor.h"
#include "VelmoraApp/AppModel/StartupPermissionPrompter.h"

namespace velmora {

// The stand-by adapter has nothing to ask for.
StartupPermissionPrompter StartupPermissionPrompter::platform() {
  return {.requestAccessibility = mac::requestAccessibility,
          .requestScreenCapture = mac::requestScreenCapture,
          .requestTerminalAutomation =
              [](TerminalAutomating& terminal) {
                auto* adapter = dynamic_cast<AppleScriptExecutor*>(&terminal);
                if (adapter != nullptr) adapter->requestAccess().get();
              },
          .requestSystemEventsAutomation =
              [](TerminalAutomating& terminal) {
                auto* adapter = dynamic_cast<AppleScriptExecutor*>(&terminal);
                if (adapter != nullptr) adapter->requestSystemEventsAccess().get();
              }};
}

}  // namespace velmora
