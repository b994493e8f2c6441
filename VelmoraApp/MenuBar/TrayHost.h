// Whether the desktop has a place for the menu-bar extra.
#pragma once

#include <QtCore/QObject>

namespace velmora {

/// For the main thread. A panel that starts after the application is waited for, and one that goes is missed.
class TrayHost : public QObject {
  Q_OBJECT

 public:
  TrayHost();

  bool isAvailable() const { return isAvailable_; }

 Q_SIGNALS:
  void availabilityChanged();

 private:
  void setAvailable(bool available);

  bool isAvailable_ = false;
};

}  // namespace velmora
