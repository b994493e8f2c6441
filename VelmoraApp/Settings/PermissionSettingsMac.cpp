#include "VelmoraApp/Settings/PermissionSettings.h"

namespace velmora {

// The system tells none of these reliably, so the rows say the same whatever the state.
PermissionSettings permissionSettings(const BridgeStatus&) {
  return {
      .caption =
          "Only these macOS Privacy & Security permissions are needed. After opening each panel, enable "
          "the item named Velmora unless the note says otherwise.",
      .rows = {{.link = SystemSettingsLink::accessibility,
                .icon = "figure.wave",
                .title = "Accessibility",
                .instruction =
                    "Enable Velmora. This lets the app deliver special keys such as arrows, Tab, Return, "
                    "and Escape.",
                .buttonTitle = "Open Accessibility Settings"},
               {.link = SystemSettingsLink::automation,
                .icon = "terminal",
                .title = "Automation",
                .instruction =
                    "Find Velmora, then enable both Terminal and System Events. This lets the app control "
                    "Terminal sessions and send special keys.",
                .buttonTitle = "Open Automation Settings"},
               {.link = SystemSettingsLink::screenRecording,
                .icon = "camera.viewfinder",
                .title = "Screen Recording",
                .instruction =
                    "Enable Velmora. This is only needed when using terminal_capture_screen to capture a "
                    "Terminal window.",
                .buttonTitle = "Open Screen Recording Settings"}}};
}

}  // namespace velmora
