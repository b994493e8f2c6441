// Waits until a session is idle, its screen changes, or a text is there.
#pragma once

#include <chrono>
#include <string>

#include "BridgeCore/Completion.h"
#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/TerminalSessionService.h"
#include "BridgeModels/ToolInputs.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe. A wait runs on its caller's thread, holds no lock and a place in the terminal's queue only
/// for each look, and ends within a moment when the caller has left or the session may not be read any more.
///
/// Whether a session is idle is told without asking the terminal, where its adapter can (TabWatch). For a
/// change or a text the terminal is looked at four times a second.
class OutputWait {
 public:
  using Timing = CompletionService::Timing;

  OutputWait(TerminalAutomating& automation, TerminalSessionService& sessions,
             const SessionPermissionService& permissions)
      : OutputWait(automation, sessions, permissions, Timing{}) {}
  OutputWait(TerminalAutomating& automation, TerminalSessionService& sessions,
             const SessionPermissionService& permissions, Timing timing);

  /// Whether what `input` waits for came in time; false too when the terminal could not be looked at, which a
  /// read tells better. Throws as a read of `session` does when that may not be read any more.
  bool wait(const ReadOutputInput& input, const TerminalSession& session, const Caller& caller);

 private:
  using Time = std::chrono::steady_clock::time_point;
  template <class Look>
  bool lookUntil(Look isMet, std::chrono::milliseconds period, const TerminalSession& session, Time end,
                 const Caller& caller);
  bool waitForIdle(const TerminalSession& session, Time end, const Caller& caller);
  bool waitForChange(const TerminalSession& session, Time end, const Caller& caller);
  bool waitForText(const ReadOutputInput& input, const TerminalSession& session, Time end,
                   const Caller& caller);
  std::string screen(const TerminalSession& session, const Caller& caller);

  TerminalAutomating& automation_;
  const SessionPermissionService& permissions_;
  const Timing timing_;
  CompletionService completion_;
};

}  // namespace velmora
