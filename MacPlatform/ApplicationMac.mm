#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#include "MacPlatform/Application.h"
#include "MacPlatform/FoundationText.hh"

namespace velmora::mac {

std::filesystem::path applicationBundlePath() {
  @autoreleasepool {
    return [[[NSBundle mainBundle] bundlePath] fileSystemRepresentation];
  }
}

std::vector<std::string> preferredLanguages() {
  @autoreleasepool {
    std::vector<std::string> languages;
    for (NSString* language in [NSLocale preferredLanguages]) languages.push_back(textOf(language));
    return languages;
  }
}

bool isApplicationRunning(const std::string& bundleIdentifier) {
  @autoreleasepool {
    NSString* const identifier = stringOf(bundleIdentifier);
    return [[NSRunningApplication runningApplicationsWithBundleIdentifier:identifier] count] > 0;
  }
}

void showAboutPanel() {
  @autoreleasepool {
    NSApplication* const application = [NSApplication sharedApplication];
    [application activateIgnoringOtherApps:YES];
    [application orderFrontStandardAboutPanel:nil];
  }
}

bool openURL(const std::string& address) {
  @autoreleasepool {
    return [[NSWorkspace sharedWorkspace] openURL:[NSURL URLWithString:stringOf(address)]];
  }
}

}  // namespace velmora::mac
