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
#include "BridgeCore/WatchedTerminals.h"
#include "BridgeModels/Caller.h"
#include "BridgeModels/ToolInputs.h"
#include "BridgeModels/ToolPayloads.h"
#include "System/Mutex.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe. Errors of the registry pass through unchanged, and the adapter's PlatformErrors; an error in
/// the adapter's own words gets the tool and the session that it knows nothing of. However many callers wait
/// for a terminal that hangs, each hears of it at its own deadline.
class TerminalSessionService {
 public:
  /// With a memory, a tab that gets a new id keeps the permission that restricted it. A session on a terminal
  /// among `watched` is blocked, whatever its permission, for as long as it is there.
  TerminalSessionService(TerminalAutomating& automation, SessionRegistry& registry, SessionPolicy policy,
                         Clock now, PermissionMemory* memory = nullptr,
                         const WatchedTerminals* watched = nullptr);

  /// How tabs found from now on are registered; those registered already keep their permission.
  void setPolicy(SessionPolicy policy);
  SessionPolicy policy() const;

  // Of each call: nothing is begun for a `caller` who has left, and its deadlines count from the call's
  // arrival.

  std::vector<TerminalSession> list(const ListSessionsInput& input, const Caller& caller = {});

  /// The first session, in registry order, that is selected in its window.
  TerminalSession active(const Caller& caller = {});

  TerminalSession create(const CreateSessionInput& input, const Caller& caller = {});

  /// The session, refreshed from a listing of its tab taken for this very call. `operation` is the tool's
  /// name, for errors.
  TerminalSession validate(const Uuid& sessionId, std::string_view operation, const Caller& caller = {});

  /// For the extended form: the session as the call left it; nothing when nobody asked or it has ended.
  std::optional<SessionState> stateAfter(const Uuid& sessionId, std::string_view operation,
                                         const Caller& caller);

  TerminalSession focus(const Uuid& sessionId, const SessionPermissionService& permissions,
                        const Caller& caller = {});

 private:
  template <class Ask, class Use>
  auto withListing(std::string_view operation, const std::optional<SessionReference>& session, Ask ask,
                   Use use);
  std::vector<TerminalSession> reconciled(std::string_view operation, const Caller& caller);
  TerminalSession asHeld(TerminalSession session) const;
  void addDetails(std::vector<TerminalSession>& sessions, std::string_view operation, const Caller& caller);

  TerminalAutomating& automation_;
  SessionRegistry& registry_;
  const Clock now_;
  PermissionMemory* const memory_;
  const WatchedTerminals* const watched_;

  // Listings reach the registry in the order in which they were taken: an older one after a newer one would
  // retire tabs that were opened between the two. A turn is drawn and the listing queued under the lock,
  // which is short; nobody holds it while the terminal is waited for.
  Mutex queueing_;
  TurnOrder order_;

  mutable Mutex mutex_;
  SessionPolicy policy_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
