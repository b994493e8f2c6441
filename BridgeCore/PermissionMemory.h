// Remembers what the user withheld from agents when a tab's session id ends. A tab that moved, or that the
// bridge meets again after a restart, gets a new id as promised; it keeps the stricter of its former
// permission and the policy's.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "BridgeCore/HistoryStore/PermissionStore.h"
#include "BridgeCore/SessionRegistry.h"
#include "System/Log.h"
#include "System/Mutex.h"

namespace velmora {

/// A monitor. Within a run every permission is remembered, also one that came from the policy. Between runs
/// only read-only and blocked are, and only when the user chose them: whoever changes the policy and starts
/// again wants the new one. Tabs whose adapter gives them no identity are not remembered.
class PermissionMemory {
 public:
  /// Without a store nothing outlives the run.
  PermissionMemory(SessionRegistry& registry, PermissionStore* store, Log log = {})
      : registry_(registry), store_(store), log_(std::move(log)) {}

  /// Reads what earlier runs kept. Throws what the store throws; then every tab that is met for the first
  /// time is read-only at best, and the file stays as it is.
  void load();

  /// Restricts the sessions that a reconcile of `listing` has just issued. `sessions` are what it returned;
  /// so are the sessions returned, as they are now.
  std::vector<TerminalSession> restricted(std::vector<TerminalSession> sessions,
                                          const std::vector<TerminalTabSnapshot>& listing);

  /// The user gave this session its permission. A failure to keep it for the next run goes to the log.
  void choose(const TerminalSession& session);

 private:
  std::optional<SessionPermission> limitOf(const TabIdentity& tab, const Uuid& session);
  void forgetGone(const std::vector<TerminalTabSnapshot>& listing);

  SessionRegistry& registry_;
  PermissionStore* const store_;
  const Log log_;

  Mutex saving_;  // taken before mutex_, held while the store works
  Mutex mutex_;
  std::map<TabIdentity, Uuid> sessionOf_ VELMORA_GUARDED_BY(mutex_);  // the last one that each tab had
  std::vector<KeptPermission> kept_ VELMORA_GUARDED_BY(mutex_);       // the one chosen last at the end
  bool isUnreadable_ VELMORA_GUARDED_BY(mutex_) = false;
};

}  // namespace velmora
