// The stand-by adapter: the bridge starts and answers, and every operation on the terminal fails.
#pragma once

#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Stateless; safe to share between threads.
class UnavailableTerminalAutomation final : public TerminalAutomating {
 public:
  using TerminalAutomating::send;

  std::string displayName() const override;
  std::future<TerminalRuntimeStatus> status() override;
  std::future<std::vector<TerminalTabSnapshot>> listSessions() override;
  std::future<TerminalTabSnapshot> createWindow() override;
  std::future<void> send(std::string command, std::string tty, std::int64_t windowId,
                         bool allowBusy) override;
  std::future<void> send(TerminalKey key, std::int64_t repeatCount, std::string tty, std::int64_t windowId,
                         bool allowBusy) override;
  std::future<TerminalOutput> readOutput(OutputSource source, std::int64_t maxCharacters, std::string tty,
                                         std::int64_t windowId) override;
  std::future<TerminalScreenCapture> captureScreen(std::string tty, std::int64_t windowId) override;
  std::future<void> focus(std::string tty, std::int64_t windowId) override;
};

}  // namespace velmora
