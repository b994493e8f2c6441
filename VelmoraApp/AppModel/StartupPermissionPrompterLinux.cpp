#include "VelmoraApp/AppModel/StartupPermissionPrompter.h"

namespace velmora {

// A terminal multiplexer of the same user needs no permission of the system.
StartupPermissionPrompter StartupPermissionPrompter::platform() {
  return {.requestAccessibility = [] { return true; },
          .requestScreenCapture = [] { return true; },
          .requestTerminalAutomation = [](TerminalAutomating&) {},
          .requestSystemEventsAutomation = [](TerminalAutomating&) {}};
}

}  // namespace velmora
