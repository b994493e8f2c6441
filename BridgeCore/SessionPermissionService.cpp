#include "BridgeCore/SessionPermissionService.h"

namespace velmora {

bool SessionPermissionService::canRead(const TerminalSession& session) {
  return session.permission != SessionPermission::blocked;
}

bool SessionPermissionService::canSend(const TerminalSession& session) {
  return session.permission == SessionPermission::managed || session.permission == SessionPermission::allowed;
}

TerminalSession SessionPermissionService::set(SessionPermission permission, const Uuid& sessionId) {
  return registry_.setPermission(permission, sessionId);
}

}  // namespace velmora
