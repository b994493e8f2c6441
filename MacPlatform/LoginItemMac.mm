#import <ServiceManagement/ServiceManagement.h>

#include "MacPlatform/LoginItem.h"

namespace velmora::mac {

bool isLoginItemEnabled() {
  @autoreleasepool {
    return [[SMAppService mainAppService] status] == SMAppServiceStatusEnabled;
  }
}

bool setLoginItemEnabled(bool enabled) {
  @autoreleasepool {
    SMAppService* const service = [SMAppService mainAppService];
    NSError* ignored = nil;
    return enabled ? [service registerAndReturnError:&ignored] : [service unregisterAndReturnError:&ignored];
  }
}

}  // namespace velmora::mac
