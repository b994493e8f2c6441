#import <Foundation/Foundation.h>

#include "MacPlatform/FoundationText.hh"
#include "TerminalAutomation/AppleScript/ScriptSource.h"

/// Marks the bundle that this module was linked into.
@interface BundleFinder : NSObject
@end

@implementation BundleFinder
@end

namespace velmora {

const std::string& bundledScriptSource() {
  static const std::string source = [] {
    @autoreleasepool {
      NSBundle* const application = [NSBundle mainBundle];
      NSBundle* const module = [NSBundle bundleForClass:[BundleFinder class]];
      return scriptSourceIn({mac::pathOf([application resourcePath]), mac::pathOf([module resourcePath]),
                             mac::pathOf([application bundlePath])});
    }
  }();
  return source;
}

}  // namespace velmora
