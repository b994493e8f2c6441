// Tells a caller who waits what the terminal shows last.
#pragma once

#include <chrono>
#include <functional>
#include <string_view>

#include "BridgeCore/SessionPermissionService.h"
#include "BridgeModels/Caller.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Belongs to one wait and its thread. Asks the terminal nothing for a caller who did not ask for it, and
/// tells nothing of a session that may not be read.
class LastLine {
 public:
  using Now = std::function<std::chrono::steady_clock::time_point()>;

  LastLine(TerminalAutomating& automation, const SessionPermissionService& permissions, const Uuid& sessionId,
           const Caller& caller, Now now);

  /// To be called again and again; tells once a second. Never throws.
  void tell();

 private:
  void look();

  TerminalAutomating& automation_;
  const SessionPermissionService& permissions_;
  const Uuid sessionId_;
  const Caller& caller_;
  const Now now_;
  std::chrono::steady_clock::time_point next_;
};

}  // namespace velmora
