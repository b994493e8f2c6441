// What the person reads when the bridge may not use the terminal.
#pragma once

#include <QtCore/QString>

#include "BridgeModels/BridgeStatus.h"

namespace velmora {

/// Empty unless automation is denied. Says where the permission is given on this system.
QString automationWarning(const BridgeStatus& status);

}  // namespace velmora
