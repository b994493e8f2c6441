// Whether the application starts when the person logs in. The system keeps the answer; ask it each time.
#pragma once

namespace velmora::mac {

/// True only when the system reports the login item as enabled, not while it waits for the person's approval
/// in System Settings. Main thread.
bool isLoginItemEnabled();

/// Registers the running application as a login item or takes it back. False when the system refuses; then
/// nothing has changed. Main thread.
bool setLoginItemEnabled(bool enabled);

}  // namespace velmora::mac
