// See Foundation/Foundation.h.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CoreGraphics.h>
#import <os/availability.h>

typedef unsigned char Boolean;

VELMORA_EXTERN_C CFStringRef kAXTrustedCheckOptionPrompt API_AVAILABLE(macos(10.9));
VELMORA_EXTERN_C Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) API_AVAILABLE(macos(10.9));
