// See Foundation/Foundation.h.
#pragma once

#import <Foundation/Foundation.h>

typedef NS_ENUM(NSInteger, SMAppServiceStatus) {
  SMAppServiceStatusNotRegistered = 0,
  SMAppServiceStatusEnabled = 1,
  SMAppServiceStatusRequiresApproval = 2,
  SMAppServiceStatusNotFound = 3
} API_AVAILABLE(macos(13.0));

API_AVAILABLE(macos(13.0))
@interface SMAppService : NSObject
+ (instancetype)mainAppService;
- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;
- (SMAppServiceStatus)status;
@end
