// What the user allows the application. The system keeps the answers; ask it each time. Main thread.
#pragma once

namespace velmora::mac {

/// Whether this process may press keys for others (accessibility). When it may not, the system shows its
/// dialogue; the answer does not wait for it. Automation of Terminal and of System Events is asked for by the
/// first Apple event to each (AppleScriptExecutor).
bool requestAccessibility();

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
