#include "VelmoraApp/MenuBar/PermissionPanes.h"
#include "VelmoraApp/Settings/SystemSettingsLink.h"

namespace velmora {

std::vector<PermissionPane> permissionPanes() {
  return {{"Accessibility", systemSettingsUrl(SystemSettingsLink::accessibility)},
          {"Automation", systemSettingsUrl(SystemSettingsLink::automation)},
          {"Screen Recording", systemSettingsUrl(SystemSettingsLink::screenRecording)}};
}

}  // namespace velmora
