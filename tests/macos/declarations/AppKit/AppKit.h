// See Foundation/Foundation.h.
#pragma once

#import <Foundation/Foundation.h>

@interface NSApplication : NSObject
+ (NSApplication*)sharedApplication;
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
- (void)orderFrontStandardAboutPanel:(id)sender;
@end

@interface NSRunningApplication : NSObject
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
@end

@interface NSWorkspace : NSObject
+ (NSWorkspace*)sharedWorkspace;
- (BOOL)openURL:(NSURL*)url;
@end
