#include "VelmoraApp/Settings/SystemSettingsLink.h"

namespace velmora {

void openSettingsPane(SystemSettingsLink) {}

}  // namespace velmora
