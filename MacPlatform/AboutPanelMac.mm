#import <AppKit/AppKit.h>

#include "MacPlatform/AboutPanel.h"

namespace velmora::mac {

void showAboutPanel() {
  @autoreleasepool {
    NSApplication* const application = [NSApplication sharedApplication];
    [application activateIgnoringOtherApps:YES];
    [application orderFrontStandardAboutPanel:nil];
  }
}

}  // namespace velmora::mac
