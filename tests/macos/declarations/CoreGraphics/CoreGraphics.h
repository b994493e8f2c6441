// See Foundation/Foundation.h.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <os/availability.h>

// The SDK says 10.15, but the function is only there from 11 on.
VELMORA_EXTERN_C bool CGRequestScreenCaptureAccess(void) API_AVAILABLE(macos(11.0));
