#include "VelmoraApp/Dashboard/AutomationWarning.h"

namespace velmora {

QString automationWarning(const BridgeStatus& status) {
  if (status.automationPermission != AutomationPermission::denied) return {};
  return "Terminal automation permission is required. Open System Settings > Privacy & Security > Automation "
         "and "
         "allow Velmora.";
}

}  // namespace velmora
