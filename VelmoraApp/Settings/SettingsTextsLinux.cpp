#include "VelmoraApp/Settings/SettingsTexts.h"

namespace velmora {

QString menuBarSwitchText() { return "Show Velmora in the tray"; }

QString connectionCaption() {
  return "This configuration names the helper of the Velmora that is running now. No URL, port, or network "
         "authentication is used.";
}

}  // namespace velmora
