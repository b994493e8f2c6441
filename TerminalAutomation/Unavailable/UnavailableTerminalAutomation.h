// The stand-by adapter: the bridge starts and answers, and every operation on the terminal fails.
#pragma once

#include "TerminalAutomation/TerminalOperations.h"

namespace velmora {

/// Stateless; safe to share between threads.
class UnavailableTerminalAutomation final : public TerminalOperations {
 public:
  std::string displayName() const override { return "Terminal"; }
  TerminalRuntimeStatus status(Deadline) override { return {}; }
  std::vector<TerminalTabSnapshot> listSessions(Deadline) override { fail(); }
  TerminalTabSnapshot createWindow(Deadline) override { fail(); }
  void sendCommand(const std::string&, const TabAddress&, bool, Deadline) override { fail(); }
  void sendKey(TerminalKey, std::int64_t, const TabAddress&, bool, Deadline) override { fail(); }
  TerminalOutput readOutput(OutputSource, std::int64_t, const TabAddress&, Deadline) override { fail(); }
  TerminalScreenCapture captureScreen(const TabAddress&, Deadline) override { fail(); }
  void focus(const TabAddress&, Deadline) override { fail(); }

 private:
  [[noreturn]] static void fail() {
    throw PlatformError("Velmora.Automation", platformErrorCode::scriptError);
  }
};

}  // namespace velmora
