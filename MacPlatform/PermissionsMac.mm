#import <ApplicationServices/ApplicationServices.h>
#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

#include "MacPlatform/FoundationText.hh"
#include "MacPlatform/Permissions.h"

namespace velmora::mac {

bool requestAccessibility() {
  @autoreleasepool {
    NSDictionary* const options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @YES};
    return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
  }
}

std::int32_t automationConsent(const std::string& bundleIdentifier, bool asksUser) {
  @autoreleasepool {
    NSAppleEventDescriptor* const target =
        [NSAppleEventDescriptor descriptorWithBundleIdentifier:stringOf(bundleIdentifier)];
    return AEDeterminePermissionToAutomateTarget([target aeDesc], typeWildCard, typeWildCard, asksUser);
  }
}

bool requestScreenCapture() { return CGRequestScreenCaptureAccess(); }

bool isLoginItemEnabled() {
  @autoreleasepool {
    return [[SMAppService mainAppService] status] == SMAppServiceStatusEnabled;
  }
}

bool setLoginItemEnabled(bool enabled) {
  @autoreleasepool {
    SMAppService* const service = [SMAppService mainAppService];
    // The system calls it an error to take back what is not there.
    if (!enabled && [service status] == SMAppServiceStatusNotRegistered) return true;
    NSError* ignored = nil;
    return enabled ? [service registerAndReturnError:&ignored] : [service unregisterAndReturnError:&ignored];
  }
}

}  // namespace velmora::mac
