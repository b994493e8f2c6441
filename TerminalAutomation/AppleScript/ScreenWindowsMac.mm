#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#include "TerminalAutomation/AppleScript/ScreenWindows.h"

namespace velmora {

namespace {

constexpr CGWindowID anyWindow = 0;  // kCGNullWindowID

std::int64_t numberIn(NSDictionary* window, CFStringRef key) {
  return [static_cast<NSNumber*>([window objectForKey:(__bridge NSString*)key]) longLongValue];
}

}  // namespace

ScreenWindows systemScreenWindows() {
  @autoreleasepool {
    const CFArrayRef list = CGWindowListCopyWindowInfo(
        kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements, anyWindow);
    if (list == nullptr) return {};
    ScreenWindows windows;
    for (NSDictionary* window in (__bridge NSArray*)list) {
      windows.push_back(
          {.number = numberIn(window, kCGWindowNumber), .layer = numberIn(window, kCGWindowLayer)});
    }
    CFRelease(list);
    return windows;
  }
}

}  // namespace velmora
