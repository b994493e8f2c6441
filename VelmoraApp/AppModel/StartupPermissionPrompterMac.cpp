#include <ApplicationServices/ApplicationServices.h>
#include <CoreGraphics/CoreGraphics.h>

#include "TerminalAutomation/AppleScript/AppleScriptExecutor.h"
#include "VelmoraApp/AppModel/StartupPermissionPrompter.h"

namespace velmora {

namespace {

// Has the system show its dialogue when the trust is missing.
bool isTrustedForAccessibility() {
  const void* keys[] = {kAXTrustedCheckOptionPrompt};
  const void* values[] = {kCFBooleanTrue};
  const auto options = CFDictionaryCreate(kCFAllocatorDefault, keys, values, 1,
                                          &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
  const bool trusted = AXIsProcessTrustedWithOptions(options);
  CFRelease(options);
  return trusted;
}

}  // namespace

// The stand-by adapter has nothing to ask for.
StartupPermissionPrompter StartupPermissionPrompter::platform() {
  return {.requestAccessibility = isTrustedForAccessibility,
          .requestScreenCapture = [] { return CGRequestScreenCaptureAccess(); },
          .requestTerminalAutomation =
              [](TerminalAutomating& terminal) {
                auto* adapter = dynamic_cast<AppleScriptExecutor*>(&terminal);
                if (adapter != nullptr) adapter->requestAccess().get();
              },
          .requestSystemEventsAutomation =
              [](TerminalAutomating& terminal) {
                auto* adapter = dynamic_cast<AppleScriptExecutor*>(&terminal);
                if (adapter != nullptr) adapter->requestSystemEventsAccess().get();
              }};
}

}  // namespace velmora
