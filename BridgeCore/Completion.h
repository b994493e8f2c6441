// Waits until a command that was delivered has ended.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/TerminalSessionService.h"
#include "BridgeModels/ToolPayloads.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe. A wait runs on its caller's thread, holds no lock and no place in the terminal's queue, and
/// ends within a moment when the caller has left.
class CompletionService {
 public:
  struct Timing {
    std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
    std::function<void(std::chrono::milliseconds)> sleep = [](std::chrono::milliseconds pause) {
      std::this_thread::sleep_for(pause);
    };
  };

  CompletionService(TerminalAutomating& automation, TerminalSessionService& sessions,
                    const SessionPermissionService& permissions)
      : CompletionService(automation, sessions, permissions, Timing{}) {}
  CompletionService(TerminalAutomating& automation, TerminalSessionService& sessions,
                    const SessionPermissionService& permissions, Timing timing);

  /// To be called before `command` is typed into the session.
  std::shared_ptr<TabWatch> watch(const std::string& command, const TerminalSession& session,
                                  const Caller& caller);

  /// To be called once it was. The output is left out when the session has ended or may not be read any more.
  CommandCompletion wait(const std::shared_ptr<TabWatch>& watch, const SendCommandInput& input,
                         const Caller& caller);

 private:
  struct Ended {
    CompletionState state;
    TabWatch::View view{};
  };
  Ended waitUntil(const std::shared_ptr<TabWatch>& watch, const SendCommandInput& input,
                  std::chrono::steady_clock::time_point end, const Caller& caller);
  TabWatch::View look(const std::shared_ptr<TabWatch>& watch, const SendCommandInput& input, bool unfinished,
                      const Caller& caller);
  bool mayRead(const Uuid& sessionId, const Caller& caller);

  TerminalAutomating& automation_;
  TerminalSessionService& sessions_;
  const SessionPermissionService& permissions_;
  const Timing timing_;
};

}  // namespace velmora
