// The panes of System Settings in which the person gives the application its permissions.
#pragma once

#include "MacPlatform/SystemSettings.h"

namespace velmora {

using mac::SystemSettingsLink;

/// Opens the pane; does nothing on a system without them. Main thread.
void openSettingsPane(SystemSettingsLink link);

}  // namespace velmora
