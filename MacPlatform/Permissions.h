// What the user allows the application. The system keeps the answers; ask it each time. Main thread, unless
// said otherwise.
#pragma once

#include <cstdint>
#include <string>

namespace velmora::mac {

/// Whether this process may press keys for others (accessibility). When it may not, the system shows its
/// dialogue; the answer does not wait for it.
bool requestAccessibility();

/// Whether the user lets this process send Apple events to the application with this bundle identifier: 0, or
/// the system's error number (-1743 denied, -1744 not asked yet, -600 the application does not run). With
/// `asksUser` a user who has not decided yet is asked now, and the call waits until they have or the system
/// takes its question away. Any thread, but never then the main one of a process with windows.
std::int32_t automationConsent(const std::string& bundleIdentifier, bool asksUser);

/// Whether this process may take pictures of the screen. The system asks the user once; what they then allow
/// usually counts from the next start of the application on.
bool requestScreenCapture();

/// Whether the application starts when the user logs in. True only when the system reports the login item as
/// enabled, not while it waits for the user's approval in System Settings.
bool isLoginItemEnabled();

/// Registers the running application as a login item or takes it back. False when the system refuses; then
/// nothing has changed.
bool setLoginItemEnabled(bool enabled);

}  // namespace velmora::mac
