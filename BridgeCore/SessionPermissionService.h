// May this session be read, may input be sent to it? Also carries the user's permission changes into the
// registry. It never checks validity: whoever asks has just validated the session.
#pragma once

#include <optional>
#include <string_view>

#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/PermissionMemory.h"
#include "BridgeCore/SessionRegistry.h"
#include "BridgeCore/WatchedTerminals.h"
#include "BridgeModels/TerminalSession.h"

namespace velmora {

/// Thread-safe; the predicates are pure.
class SessionPermissionService {
 public:
  /// With a memory, what the user set outlives the session's id.
  explicit SessionPermissionService(SessionRegistry& registry, PermissionMemory* memory = nullptr,
                                    const WatchedTerminals* watched = nullptr)
      : registry_(registry), memory_(memory), watched_(watched) {}

  /// Read output, capture the screen: all but blocked sessions.
  static bool canRead(const TerminalSession& session) {
    return session.permission != SessionPermission::blocked;
  }
  /// The session as the registry knows it; the terminal is not asked. Throws as a read of it would.
  TerminalSession requireReadable(const Uuid& sessionId, std::string_view operation) const {
    auto session = registry_.session(sessionId);
    if (watched_ != nullptr) session = watched_->asHeld(std::move(session));
    if (!canRead(session)) throw catalogue::sessionNotAllowed(operation, session.reference());
    return session;
  }
  /// Send commands and keys: managed and allowed sessions only.
  static bool canSend(const TerminalSession& session) {
    return session.permission == SessionPermission::managed ||
           session.permission == SessionPermission::allowed;
  }
  static bool canFocus(const TerminalSession& session) { return canRead(session); }

  /// Returns the session as stored afterwards. Throws the registry's not found and stale errors.
  TerminalSession set(SessionPermission permission, const Uuid& sessionId) {
    auto session = registry_.setPermission(permission, sessionId);
    if (memory_ != nullptr) memory_->choose(session);
    return session;
  }

  /// The same, unless that would give agents more; then nothing.
  std::optional<TerminalSession> tighten(SessionPermission permission, const Uuid& sessionId) {
    auto session = registry_.tighten(permission, sessionId);
    if (session && memory_ != nullptr) memory_->choose(*session);
    return session;
  }

 private:
  SessionRegistry& registry_;
  PermissionMemory* const memory_;
  const WatchedTerminals* const watched_;
};

}  // namespace velmora
