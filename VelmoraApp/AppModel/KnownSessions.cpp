#include "VelmoraApp/AppModel/KnownSessions.h"

namespace velmora {

bool mayBeTypedInto(const TerminalSession& session) {
  return !session.bridgeCreated && SessionPermissionService::canSend(session);
}

void meetKnownSessions(BridgeCoordinator& core, SessionPolicy policy) {
  core.setSessionPolicy(policy);
  if (policy != SessionPolicy::safe) return;  // until the choice, sessions were found as read-only
  auto& registry = core.registry();
  for (const auto& session : registry.currentSessions()) {
    if (session.bridgeCreated || session.permission != SessionPermission::readOnly) continue;
    // Past the permission service: it is the policy's word, and not the user's for this session.
    registry.setPermission(SessionPermission::managed, session.sessionId);
  }
}

void makeKnownSessionsReadOnly(BridgeCoordinator& core) {
  for (const auto& session : core.registry().currentSessions()) {
    if (!mayBeTypedInto(session)) continue;
    try {
      core.setPermission(SessionPermission::readOnly, session.sessionId);
    } catch (const StructuredError& error) {
      if (error.code != ErrorCode::sessionNotFound && error.code != ErrorCode::sessionStale) throw;
    }
  }
}

}  // namespace velmora
