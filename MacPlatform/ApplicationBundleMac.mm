#import <Foundation/Foundation.h>

#include "MacPlatform/ApplicationBundle.h"

namespace velmora::mac {

std::filesystem::path applicationBundlePath() {
  @autoreleasepool {
    return [[[NSBundle mainBundle] bundlePath] fileSystemRepresentation];
  }
}

}  // namespace velmora::mac
