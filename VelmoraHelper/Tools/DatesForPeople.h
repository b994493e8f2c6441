// Points in time as people and agents read them.
#pragma once

#include "BridgeModels/JSONValue.h"

namespace velmora {

/// Rewrites the dates of a tool's payload wherever they stand in it: a member whose name ends in "At" and
/// which holds a number, the seconds since 2001-01-01T00:00:00Z, becomes UTC text with milliseconds (cut
/// towards the past), "2026-11-21T07:26:00.250Z". A date outside the years 0 to 9999 stays a number.
void writeDatesForPeople(JSONValue& payload);

}  // namespace velmora
