// See Foundation/Foundation.h.
#pragma once

#import <Foundation/Foundation.h>

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) { NSApplicationActivationPolicyProhibited = 2 };

@interface NSApplication : NSObject
+ (NSApplication*)sharedApplication;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)run;
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
- (void)orderFrontStandardAboutPanel:(id)sender;
@end

@interface NSRunningApplication : NSObject
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
@end

API_AVAILABLE(macos(10.15))
@interface NSWorkspaceOpenConfiguration : NSObject
+ (instancetype)configuration;
- (void)setActivates:(BOOL)activates;
- (void)setAddsToRecentItems:(BOOL)addsToRecentItems;
@end

@interface NSWorkspace : NSObject
+ (NSWorkspace*)sharedWorkspace;
- (BOOL)openURL:(NSURL*)url;
- (NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)bundleIdentifier;
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(id)completionHandler API_AVAILABLE(macos(10.15));
@end

@interface NSMenu : NSObject
@end

@interface NSImage : NSObject
- (instancetype)initWithData:(NSData*)data;
- (void)setSize:(NSSize)size;
- (void)setTemplate:(BOOL)isTemplate;
@end

@interface NSStatusBarButton : NSObject
- (void)setImage:(NSImage*)image;
- (void)setToolTip:(NSString*)string;
@end

static const CGFloat NSSquareStatusItemLength = -2;

@interface NSStatusItem : NSObject
- (NSStatusBarButton*)button;
- (void)setMenu:(NSMenu*)menu;
@end

@interface NSStatusBar : NSObject
+ (NSStatusBar*)systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end
