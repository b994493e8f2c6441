// Days as the user's calendar counts them, over ICU. Link the target BridgeText.
#pragma once

#include <cstdint>

#include "BridgeModels/Date.h"

namespace velmora {

/// `date` moved back by whole days of the Gregorian calendar in the local time zone: the same time of day,
/// also across a change of daylight saving. The distant past when the calendar cannot form the day. Any
/// thread.
Date daysBefore(Date date, std::int64_t days);

}  // namespace velmora
