#include "VelmoraApp/AppModel/MenuBarPreference.h"

namespace velmora {

void MenuBarPreference::setMenuBarEnabled(bool enabled) {
  if (enabled == menuBarEnabled()) return;
  defaults_.set(userDefault::menuBarEnabled, enabled);
  Q_EMIT changed();
}

void MenuBarPreference::setHasPlace(bool hasPlace) {
  if (hasPlace == hasPlace_) return;
  hasPlace_ = hasPlace;
  Q_EMIT changed();
}

}  // namespace velmora
