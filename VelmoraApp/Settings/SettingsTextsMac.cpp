#include "VelmoraApp/Settings/SettingsTexts.h"

namespace velmora {

QString menuBarSwitchText() { return "Show Velmora in the menu bar"; }

QString connectionCaption() {
  return "This configuration assumes Velmora.app is installed in /Applications. No URL, port, or network "
         "authentication is used.";
}

}  // namespace velmora
