// The operations themselves, one call after another: arguments in, replies read, failures named.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TerminalAutomation/AppleScript/AppleScriptParts.h"
#include "TerminalAutomation/AppleScript/ScriptHandlers.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Not thread-safe. Throws PlatformError with the script's own error number. An integer outside 32 bits and
/// an empty listing stop the process: the first cannot come from an id that the script gave, the second the
/// script promises never to return. `parts` must outlive it.
class AppleScriptOperations {
 public:
  explicit AppleScriptOperations(const AppleScriptParts& parts) : parts_(parts) {}

  void compile(const std::string& source);

  TerminalRuntimeStatus status();
  std::vector<TerminalTabSnapshot> listSessions();
  TerminalTabSnapshot createWindow();
  void sendCommand(const std::string& command, const std::string& tty, std::int64_t windowId, bool allowBusy);
  void sendKey(TerminalKey key, std::int64_t repeatCount, const std::string& tty, std::int64_t windowId,
               bool allowBusy);
  TerminalOutput readOutput(OutputSource source, std::int64_t maxCharacters, const std::string& tty,
                            std::int64_t windowId);
  TerminalScreenCapture captureScreen(const std::string& tty, std::int64_t windowId);
  void focus(const std::string& tty, std::int64_t windowId);
  void closeWindow(std::int64_t windowId);

  /// The first Apple event to an application makes the system ask the person for consent.
  void requestTerminalAccess();
  void requestSystemEventsAccess();

 private:
  template <std::size_t Arity, class... Arguments>
  ScriptDescriptor call(const ScriptHandler<Arity>& handler, Arguments... arguments);

  const AppleScriptParts& parts_;
};

}  // namespace velmora
