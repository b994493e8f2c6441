// The two permissions that are asked for by a call. The other two, automation of Terminal and of System
// Events, are asked for by the first Apple event to each (AppleScriptExecutor).
#pragma once

namespace velmora::mac {

/// Whether this process may press keys for others (accessibility). When it may not, the system shows its
/// dialogue; the answer does not wait for it. Main thread.
bool requestAccessibility();

/// Whether this process may take pictures of the screen. The system asks the person once; what they then
/// allow usually counts from the next start of the application on. Main thread.
bool requestScreenCapture();

}  // namespace velmora::mac
