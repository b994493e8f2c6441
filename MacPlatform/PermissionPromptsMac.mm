#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include "MacPlatform/PermissionPrompts.h"

namespace velmora::mac {

bool requestAccessibility() {
  @autoreleasepool {
    NSDictionary* const options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @YES};
    return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
  }
}

bool requestScreenCapture() { return CGRequestScreenCaptureAccess(); }

}  // namespace velmora::mac
