#include "VelmoraApp/Settings/SystemSettingsLink.h"

namespace velmora {

void openSettingsPane(SystemSettingsLink link) { mac::openSystemSettings(link); }

}  // namespace velmora
