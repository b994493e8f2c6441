// Whether the user wants the menu-bar extra, and whether the desktop has a place for it.
#pragma once

#include <QtCore/QObject>

#include "VelmoraApp/Platform/UserDefaults.h"

namespace velmora {

/// For the main thread.
class MenuBarPreference : public QObject {
  Q_OBJECT

 public:
  /// `defaults` must outlive it.
  explicit MenuBarPreference(UserDefaults& defaults) : defaults_(defaults) {}

  bool menuBarEnabled() const { return defaults_.boolean(userDefault::menuBarEnabled, /*absent=*/true); }
  void setMenuBarEnabled(bool enabled) {
    if (enabled == menuBarEnabled()) return;
    defaults_.set(userDefault::menuBarEnabled, enabled);
    Q_EMIT changed();
  }

  bool hasPlace() const { return hasPlace_; }
  void setHasPlace(bool hasPlace) {
    if (hasPlace == hasPlace_) return;
    hasPlace_ = hasPlace;
    Q_EMIT changed();
  }

  bool shows() const { return menuBarEnabled() && hasPlace_; }

 Q_SIGNALS:
  void changed();

 private:
  UserDefaults& defaults_;
  bool hasPlace_ = false;
};

}  // namespace velmora
