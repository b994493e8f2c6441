#include "VelmoraApp/MenuBar/TrayHost.h"

namespace velmora {

TrayHost::TrayHost() : isAvailable_(true) {}

}  // namespace velmora
