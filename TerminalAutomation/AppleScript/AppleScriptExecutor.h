// The adapter that drives Terminal.app through one compiled AppleScript.
#pragma once

#include <memory>
#include <string>

#include "TerminalAutomation/AppleScript/AppleScriptOperations.h"
#include "TerminalAutomation/SerialTerminal.h"

namespace velmora {

/// AppleScriptOperations in a SerialTerminal: one thread alone asks the compiled script.
class AppleScriptExecutor final : public SerialTerminal {
 public:
  /// Waits until `source` is compiled. Throws PlatformError when it does not compile.
  AppleScriptExecutor(AppleScriptParts parts, const std::string& source);

  /// Makes the system ask the user whether Velmora may control Terminal; nothing happens while Terminal
  /// does not run. Then the user is asked as soon as it is found running. The answer shows in `status`.
  /// Without a deadline, like the other two: a user takes their time, and what waits behind it fails
  /// meanwhile.
  std::future<void> requestAccess();

  /// The same for System Events, which presses the keys.
  std::future<void> requestSystemEventsAccess();

  /// Closes one window. For tests on a Mac; the bridge itself never closes a window.
  std::future<void> closeTestWindow(std::int64_t windowId);

 private:
  explicit AppleScriptExecutor(AppleScriptOperations* operations);  // takes it over

  AppleScriptOperations& operations_;  // used on the adapter's thread only
};

}  // namespace velmora
