// See Foundation/Foundation.h.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <os/availability.h>
#import <stdint.h>

// The SDK says 10.15, but the function is only there from 11 on.
VELMORA_EXTERN_C bool CGRequestScreenCaptureAccess(void) API_AVAILABLE(macos(11.0));

typedef uint32_t CGWindowID;
typedef uint32_t CGWindowListOption;
enum { kCGWindowListOptionOnScreenOnly = 1, kCGWindowListExcludeDesktopElements = 16 };

VELMORA_EXTERN_C CFStringRef kCGWindowNumber API_AVAILABLE(macos(10.5));
VELMORA_EXTERN_C CFStringRef kCGWindowLayer API_AVAILABLE(macos(10.5));
VELMORA_EXTERN_C CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option,
                                                       CGWindowID relativeToWindow);
