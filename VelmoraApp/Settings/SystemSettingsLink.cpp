#include "VelmoraApp/Settings/SystemSettingsLink.h"

namespace velmora {

QUrl systemSettingsUrl(SystemSettingsLink link) {
  const QString privacy = "x-apple.systempreferences:com.apple.preference.security?";
  switch (link) {
    case SystemSettingsLink::accessibility:
      return QUrl(privacy + "Privacy_Accessibility");
    case SystemSettingsLink::automation:
      return QUrl(privacy + "Privacy_Automation");
    case SystemSettingsLink::screenRecording:
      return QUrl(privacy + "Privacy_ScreenCapture");
  }
  return {};
}

}  // namespace velmora
