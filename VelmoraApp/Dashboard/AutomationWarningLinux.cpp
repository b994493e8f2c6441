#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/Dashboard/AutomationWarning.h"

namespace velmora {

// No settings pane gives this permission; the adapter knows what stands in its way.
QString automationWarning(const BridgeStatus& status) {
  if (status.automationPermission != AutomationPermission::denied) return {};
  QString warning = "Terminal automation permission is required.";
  if (!status.lastError) return warning;
  return warning + " " + text(status.lastError->message + " " + status.lastError->recoverySuggestion);
}

}  // namespace velmora
