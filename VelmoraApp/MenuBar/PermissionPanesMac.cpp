#include "VelmoraApp/MenuBar/PermissionPanes.h"

namespace velmora {

std::vector<PermissionPane> permissionPanes() {
  const QString privacy = "x-apple.systempreferences:com.apple.preference.security?";
  return {{"Accessibility", QUrl(privacy + "Privacy_Accessibility")},
          {"Automation", QUrl(privacy + "Privacy_Automation")},
          {"Screen Recording", QUrl(privacy + "Privacy_ScreenCapture")}};
}

}  // namespace velmora
