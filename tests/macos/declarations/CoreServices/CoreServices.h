// See Foundation/Foundation.h.
#pragma once

#import <Foundation/Foundation.h>

typedef int32_t OSStatus;

enum { typeWildCard = 707406378 };  // '****'

VELMORA_EXTERN_C OSStatus AEDeterminePermissionToAutomateTarget(const AEDesc* target,
                                                                AEEventClass theAEEventClass,
                                                                AEEventID theAEEventID,
                                                                Boolean askUserIfNeeded)
    API_AVAILABLE(macos(10.14));
