#import "FakeSystem.h"

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>
#import <CoreServices/CoreServices.h>
#import <ServiceManagement/ServiceManagement.h>
#import <Sparkle/Sparkle.h>

FakeSystem fakeSystem;

namespace {

void note(const std::string& what) { fakeSystem.done.push_back(what); }

std::string utf8(NSString* text) { return text == nil ? "nothing" : [text UTF8String]; }

NSString* string(const std::string& text) { return [NSString stringWithUTF8String:text.c_str()]; }

// The one object of a class.
template <class Type>
Type* shared(Class itsClass) {
  static Type* const object = [itsClass new];
  return object;
}

bool updatesByItself = false;

}  // namespace

CFStringRef kAXTrustedCheckOptionPrompt = (CFStringRef) @"AXTrustedCheckOptionPrompt";
CFStringRef kCGWindowNumber = (CFStringRef) @"kCGWindowNumber";
CFStringRef kCGWindowLayer = (CFStringRef) @"kCGWindowLayer";

void CFRelease(CFTypeRef) { --fakeSystem.listsKept; }

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  NSDictionary* const given = (NSDictionary*)options;
  for (NSString* key in given) fakeSystem.trustOptions[utf8(key)] = [[given objectForKey:key] boolValue];
  return fakeSystem.isTrusted;
}

bool CGRequestScreenCaptureAccess() { return fakeSystem.isTrusted; }

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow) {
  note("windows " + std::to_string(option) + " " + std::to_string(relativeToWindow));
  if (!fakeSystem.hasWindowServer) return nullptr;
  ++fakeSystem.listsKept;
  NSMutableArray* const list = [NSMutableArray new];
  for (const auto& [number, layer] : fakeSystem.windows) {
    [list addObject:[NSDictionary
                        dictionaryWithObjectsAndKeys:[NSNumber numberWithInt:number], @"kCGWindowNumber",
                                                     [NSNumber numberWithInt:layer], @"kCGWindowLayer", nil]];
  }
  return (CFArrayRef)list;
}

OSStatus AEDeterminePermissionToAutomateTarget(const AEDesc* target, AEEventClass theAEEventClass,
                                               AEEventID theAEEventID, Boolean askUserIfNeeded) {
  const bool anyEvent = theAEEventClass == '****' && theAEEventID == '****';
  note("consent " + utf8([(FakeDescriptor*)target stringValue]) + (anyEvent ? "" : " of some") +
       (askUserIfNeeded ? "?" : ""));
  return fakeSystem.consent;
}

@implementation NSApplication
+ (NSApplication*)sharedApplication {
  return shared<NSApplication>(self);
}
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy {
  note("policy " + std::to_string(activationPolicy));
  return YES;
}
- (void)run {
  [[NSRunLoop currentRunLoop] run];
}
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps {
  note(ignoreOtherApps ? "activate" : "activate politely");
}
- (void)orderFrontStandardAboutPanel:(id)sender {
  note(sender == nil ? "about panel" : "about panel of somebody");
}
@end

@implementation NSRunningApplication
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
  note("running " + utf8(bundleIdentifier));
  if (fakeSystem.misses > 0) {
    --fakeSystem.misses;
    return [NSArray array];
  }
  return fakeSystem.running.count(utf8(bundleIdentifier)) ? [NSArray arrayWithObject:bundleIdentifier]
                                                          : [NSArray array];
}
@end

@implementation NSWorkspaceOpenConfiguration
+ (instancetype)configuration {
  return [self new];
}
- (void)setActivates:(BOOL)activates {
  note(activates ? "in front" : "behind");
}
- (void)setAddsToRecentItems:(BOOL)adds {
  note(adds ? "remembered" : "not remembered");
}
@end

@implementation NSWorkspace
+ (NSWorkspace*)sharedWorkspace {
  return shared<NSWorkspace>(self);
}
- (BOOL)openURL:(NSURL*)url {
  note("open " + utf8([url absoluteString]));
  return fakeSystem.opensAddresses && url != nil;
}
- (NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)bundleIdentifier {
  if (!fakeSystem.installed.count(utf8(bundleIdentifier))) return nil;
  return [NSURL URLWithString:string("file:///Applications/" + utf8(bundleIdentifier))];
}
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(id)completionHandler {
  // The system raises for either.
  if (applicationURL == nil || configuration == nil)
    [NSException raise:NSInvalidArgumentException format:@"nil"];
  note("start " + utf8([applicationURL absoluteString]) + (completionHandler == nil ? "" : " and tell"));
}
@end

@implementation NSMenu
@end

@implementation NSImage
- (instancetype)initWithData:(NSData*)data {
  note("image of " + std::to_string([data length]) + " bytes");
  return [super init];
}
- (void)setSize:(NSSize)size {
  note("of " + std::to_string(static_cast<int>(size.width)) + " by " +
       std::to_string(static_cast<int>(size.height)) + " points");
}
- (void)setTemplate:(BOOL)isTemplate {
  note(isTemplate ? "a shape" : "coloured");
}
@end

@implementation NSStatusBarButton
- (void)setImage:(NSImage*)image {
  note(image == nil ? "no image" : "shown");
}
- (void)setToolTip:(NSString*)text {
  note("tool tip " + utf8(text));
}
@end

@implementation NSStatusItem
- (NSStatusBarButton*)button {
  return shared<NSStatusBarButton>([NSStatusBarButton class]);
}
- (void)setMenu:(NSMenu*)menu {
  note([menu isKindOfClass:[NSMenu class]] ? "menu" : "no menu");
}
@end

@implementation NSStatusBar
+ (NSStatusBar*)systemStatusBar {
  return shared<NSStatusBar>(self);
}
- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
  note("item of length " + std::to_string(static_cast<int>(length)));
  return shared<NSStatusItem>([NSStatusItem class]);
}
- (void)removeStatusItem:(NSStatusItem*)item {
  note(item == shared<NSStatusItem>([NSStatusItem class]) ? "item removed" : "another item removed");
}
@end

@implementation SMAppService
+ (instancetype)mainAppService {
  return shared<SMAppService>(self);
}
- (SMAppServiceStatus)status {
  return static_cast<SMAppServiceStatus>(fakeSystem.loginStatus);
}
- (BOOL)registerAndReturnError:(NSError**)error {
  note("register");
  return fakeSystem.changesLogin;
}
- (BOOL)unregisterAndReturnError:(NSError**)error {
  note("unregister");
  return fakeSystem.changesLogin;
}
@end

@implementation SPUUpdater
- (BOOL)automaticallyChecksForUpdates {
  return updatesByItself;
}
- (void)setAutomaticallyChecksForUpdates:(BOOL)automatically {
  updatesByItself = automatically;
}
- (NSDate*)lastUpdateCheckDate {
  return updatesByItself ? [NSDate dateWithTimeIntervalSinceReferenceDate:42.5] : nil;
}
@end

@implementation SPUStandardUpdaterController
- (instancetype)initWithStartingUpdater:(BOOL)startUpdater
                        updaterDelegate:(id)updaterDelegate
                     userDriverDelegate:(id)userDriverDelegate {
  const bool usual = updaterDelegate == nil && userDriverDelegate == nil;
  note(startUpdater && usual ? "updater started" : "another updater");
  return [super init];
}
- (SPUUpdater*)updater {
  return shared<SPUUpdater>([SPUUpdater class]);
}
- (void)checkForUpdates:(id)sender {
  note("look for updates");
}
@end

@implementation FakeProcessInfo
+ (FakeProcessInfo*)processInfo {
  return shared<FakeProcessInfo>(self);
}
- (id)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason {
  note("activity " + std::to_string(options) + " " + utf8(reason));
  return self;
}
@end
