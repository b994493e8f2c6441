#include "VelmoraApp/MenuBar/TrayHost.h"

namespace velmora {

void TrayHost::setAvailable(bool available) {
  if (available == isAvailable_) return;
  isAvailable_ = available;
  Q_EMIT availabilityChanged();
}

}  // namespace velmora
