// The panes of System Settings where the person grants permissions.
#pragma once

namespace velmora::mac {

enum class SystemSettingsLink { accessibility, automation, screenRecording };

/// The pane's URL.
constexpr const char* urlOf(SystemSettingsLink link) {
  switch (link) {
    case SystemSettingsLink::accessibility:
      return "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
    case SystemSettingsLink::automation:
      return "x-apple.systempreferences:com.apple.preference.security?Privacy_Automation";
    case SystemSettingsLink::screenRecording:
      break;
  }
  return "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture";
}

/// Opens the pane. False when the system could not. Main thread.
bool openSystemSettings(SystemSettingsLink link);

}  // namespace velmora::mac
