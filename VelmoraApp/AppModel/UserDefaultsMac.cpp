#include <QtCore/QSettings>

#include "VelmoraApp/AppModel/UserDefaults.h"

namespace velmora {

// The organization's domain, reversed, and the application's name make the bundle identifier:
// app.velmora.Velmora.
UserDefaults UserDefaults::standard(const Environment&) {
  return UserDefaults(std::make_unique<QSettings>("velmora.app", "Velmora"));
}

}  // namespace velmora
