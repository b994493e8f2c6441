// Brings fresh listings of the terminal's tabs and the session registry together: lists, finds the active
// tab, creates, focuses, and turns a session id into a session that is valid right now.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "BridgeCore/PermissionMemory.h"
#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/SessionRegistry.h"
#include "BridgeCore/TurnOrder.h"
#include "BridgeModels/Caller.h"
#include "BridgeModels/ToolInputs.h"
#include "System/Mutex.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe. Errors of the registry pass through unchanged, and the adapter's PlatformErrors; an error in
/// the adapter's own words gets the tool and the session that it knows nothing of. However many callers wait
/// for a terminal that hangs, each hears of it at its own deadline.
class TerminalSessionService {
 public:
  /// With a memory, a tab that gets a new id keeps the permission that restricted it.
  TerminalSessionService(TerminalAutomating& automation, SessionRegistry& registry, SessionPolicy policy,
                         Clock now, PermissionMemory* memory = nullptr);

  /// How tabs found from now on are registered; those registered already keep their permission.
  void setPolicy(SessionPolicy policy);

  // Of each call: nothing is begun for a `caller` who has left, and its deadlines count from the call's
  // arrival.

  std::vector<TerminalSession> list(const ListSessionsInput& input, const Caller& caller = {});

  /// The first session, in registry order, that is selected in its window.
  TerminalSession active(const Caller& caller = {});

  TerminalSession create(const CreateSessionInput& input, const Caller& caller = {});

  /// The session, refreshed from a listing taken for this very call. `operation` is the tool's name, for
  /// errors.
  TerminalSession validate(const Uuid& sessionId, std::string_view operation, const Caller& caller = {});

  TerminalSession focus(const Uuid& sessionId, const SessionPermissionService& permissions,
                        const Caller& caller = {});

 private:
  template <class Use>
  auto withListing(std::string_view operation, const std::optional<SessionReference>& session,
                   const Caller& caller, Use use);
  std::vector<TerminalSession> reconciled(std::string_view operation, const Caller& caller);
  SessionPolicy policy() const;

  TerminalAutomating& automation_;
  SessionRegistry& registry_;
  const Clock now_;
  PermissionMemory* const memory_;

  // Listings reach the registry in the order in which they were taken: an older one after a newer one would
  // retire tabs that were opened between the two. A turn is drawn and the listing queued under the lock,
  // which is short; nobody holds it while the terminal is waited for.
  Mutex queueing_;
  TurnOrder order_;

  mutable Mutex mutex_;
  SessionPolicy policy_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
