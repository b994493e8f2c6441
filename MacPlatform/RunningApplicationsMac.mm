#import <AppKit/AppKit.h>

#include "MacPlatform/FoundationText.hh"
#include "MacPlatform/RunningApplications.h"

namespace velmora::mac {

bool isApplicationRunning(const std::string& bundleIdentifier) {
  @autoreleasepool {
    NSString* const identifier = stringOf(bundleIdentifier);
    return [[NSRunningApplication runningApplicationsWithBundleIdentifier:identifier] count] > 0;
  }
}

}  // namespace velmora::mac
