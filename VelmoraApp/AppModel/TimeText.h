// Points in time as the screens show them.
#pragma once

#include <QtCore/QString>

#include "BridgeModels/Date.h"

namespace velmora {

/// In the local time zone: "14:05:22" on the day of `now`, else "2026-11-21 14:05:22".
QString timeText(Date date, Date now);

}  // namespace velmora
