#import <AppKit/AppKit.h>

#include "MacPlatform/FoundationText.hh"
#include "MacPlatform/SystemSettings.h"

namespace velmora::mac {

bool openSystemSettings(SystemSettingsLink link) {
  @autoreleasepool {
    return [[NSWorkspace sharedWorkspace] openURL:[NSURL URLWithString:stringOf(urlOf(link))]];
  }
}

}  // namespace velmora::mac
