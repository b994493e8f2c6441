// Days as the user's calendar counts them.
#pragma once

#include <cstdint>

#include "BridgeModels/Date.h"

namespace velmora {

/// `date` moved back by whole days of the Gregorian calendar in the local time zone: the same time of day,
/// also across a change of daylight saving. A time of day that was skipped there becomes the one an hour
/// later (earlier, when `date` is in winter); of one that came twice, the side of `date`. The distant past
/// for days that lie outside any calendar. Any thread.
Date daysBefore(Date date, std::int64_t days);

}  // namespace velmora
