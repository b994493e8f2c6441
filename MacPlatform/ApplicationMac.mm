#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#include <chrono>
#include <thread>

#include "MacPlatform/Application.h"
#include "MacPlatform/FoundationText.hh"

namespace velmora::mac {

std::filesystem::path applicationBundlePath() {
  @autoreleasepool {
    return pathOf([[NSBundle mainBundle] bundlePath]);
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
    // The system misses a running application for some milliseconds now and then.
    for (int look = 0; look < 2; ++look) {
      if (look > 0) std::this_thread::sleep_for(std::chrono::milliseconds(50));
      if ([[NSRunningApplication runningApplicationsWithBundleIdentifier:identifier] count] > 0) return true;
    }
    return false;
  }
}

void startInBackground(const std::string& bundleIdentifier) {
  @autoreleasepool {
    NSWorkspace* const workspace = [NSWorkspace sharedWorkspace];
    NSURL* const application = [workspace URLForApplicationWithBundleIdentifier:stringOf(bundleIdentifier)];
    if (application == nil) return;
    NSWorkspaceOpenConfiguration* const configuration = [NSWorkspaceOpenConfiguration configuration];
    [configuration setActivates:NO];
    [configuration setAddsToRecentItems:NO];
    [workspace openApplicationAtURL:application configuration:configuration completionHandler:nil];
  }
}

void stayAwake(const std::string& reason) {
  @autoreleasepool {
    // The activity lasts as long as the object that stands for it.
    static const id activity =
        [[NSProcessInfo processInfo] beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                       reason:stringOf(reason)];
    (void)activity;
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
