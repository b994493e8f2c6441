// Brings fresh listings of the terminal's tabs and the session registry together: lists, finds the active
// tab, creates, focuses, and turns a session id into a session that is valid right now.
#pragma once

#include <vector>

#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/SessionRegistry.h"
#include "BridgeModels/ToolInputs.h"
#include "System/Mutex.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe. Errors of the adapter and of the registry pass through unchanged.
class TerminalSessionService {
 public:
  TerminalSessionService(TerminalAutomating& automation, SessionRegistry& registry, SessionPolicy policy,
                         Clock now);

  /// How tabs found from now on are registered; those registered already keep their permission.
  void setPolicy(SessionPolicy policy);

  std::vector<TerminalSession> list(const ListSessionsInput& input);

  /// The first session, in registry order, that is selected in its window.
  TerminalSession active();

  TerminalSession create(const CreateSessionInput& input);

  /// The session, refreshed from a listing taken for this very call.
  TerminalSession validate(const Uuid& sessionId);

  TerminalSession focus(const Uuid& sessionId, const SessionPermissionService& permissions);

 private:
  std::vector<TerminalSession> reconciled();
  SessionPolicy policy() const;

  TerminalAutomating& automation_;
  SessionRegistry& registry_;
  const Clock now_;

  // Listings reach the registry in the order in which they were taken: an older one after a newer one would
  // retire tabs that were opened between the two. It is the one lock held across a call of the adapter, which
  // takes one call at a time anyway and never calls back.
  Mutex listingOrder_;

  mutable Mutex mutex_;
  SessionPolicy policy_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
