// The one authority that turns terminal tabs into stable session ids. A session id always means the same tab:
// an id whose tab closed or changed is never handed to another tab, and a tab that lost its id gets a fresh
// one.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/TerminalSession.h"
#include "BridgeModels/Uuid.h"
#include "System/Mutex.h"

namespace velmora {

/// Lives as long as the run and is not persisted. Thread-safe; every operation is atomic, so a reconcile
/// never meets a lookup half-way. Failures are StructuredErrors: sessionNotFound for an id that is unknown or
/// retired, sessionStale for one that is not valid.
///
/// Invariants: a tty maps to at most one id, and that id's session is valid; a tombstoned id is never
/// returned and never issued again; every session carries the registry's generation.
class SessionRegistry {
 public:
  SessionRegistry(const Uuid& generation, UuidSource uuid);

  /// Brings the table in line with a whole listing and returns the valid sessions. A tab that moved to
  /// another window loses its id now and gets a new one at the next reconcile. Throws, and changes nothing,
  /// when a tty is empty or stands twice.
  std::vector<TerminalSession> reconcile(const std::vector<TerminalTabSnapshot>& snapshots,
                                         SessionPolicy policy, Date now);

  /// Registers a tab that the bridge itself just opened: managed, whatever the policy.
  TerminalSession registerCreated(const TerminalTabSnapshot& snapshot, Date now);

  /// The valid sessions by window index, then tab index.
  std::vector<TerminalSession> currentSessions() const;

  TerminalSession session(const Uuid& id) const;

  /// The terminal of a valid session; nothing for any other id.
  std::optional<std::string> ttyOf(const Uuid& id) const;

  /// Also of a session that is no longer valid; nothing for an id that was never issued.
  std::optional<SessionPermission> lastPermission(const Uuid& id) const;

  /// Checks the session against a fresh listing, of which the tabs on its terminal suffice, and refreshes it;
  /// when it no longer is that tab it turns stale for ever.
  TerminalSession validate(const Uuid& id, const std::vector<TerminalTabSnapshot>& snapshots, Date now);

  /// Returns the session as stored afterwards.
  TerminalSession setPermission(SessionPermission permission, const Uuid& id);

  /// The same, unless that would give agents more; then nothing.
  std::optional<TerminalSession> tighten(SessionPermission permission, const Uuid& id);

  /// Notes a tool call that named the session, whatever its validity; an unknown id is ignored.
  void markRequest(const Uuid& id, Date at);

  const Uuid& generation() const { return generation_; }

 private:
  const TerminalSession& requireValid(const Uuid& id) const VELMORA_REQUIRES(mutex_);
  TerminalSession& lookUp(const Uuid& id) VELMORA_REQUIRES(mutex_);
  std::vector<TerminalSession> validSessions() const VELMORA_REQUIRES(mutex_);
  TerminalSession* sessionOfTTY(const std::string& tty) VELMORA_REQUIRES(mutex_);
  TerminalSession& add(const Uuid& id, const TerminalTabSnapshot& snapshot, SessionPermission permission,
                       bool bridgeCreated, Date now) VELMORA_REQUIRES(mutex_);
  Uuid unusedId() VELMORA_REQUIRES(mutex_);
  void retire(TerminalSession& session) VELMORA_REQUIRES(mutex_);

  const Uuid generation_;
  const UuidSource uuid_;
  mutable Mutex mutex_;
  std::map<Uuid, TerminalSession> sessions_ VELMORA_GUARDED_BY(mutex_);
  std::unordered_map<std::string, Uuid> sessionByTTY_ VELMORA_GUARDED_BY(mutex_);
  std::unordered_set<Uuid> tombstones_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
