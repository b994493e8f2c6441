#include "BridgeCore/SessionRegistry.h"

#include <algorithm>
#include <string_view>
#include <tuple>

#include "BridgeCore/ErrorCatalogue.h"

namespace velmora {

namespace {

void refresh(TerminalSession& session, const TerminalTabSnapshot& snapshot, Date now) {
  session.windowIndex = snapshot.windowIndex;
  session.tabIndex = snapshot.tabIndex;
  session.title = snapshot.title;
  session.busy = snapshot.busy;
  session.selected = snapshot.selected;
  session.neverShown = session.neverShown && snapshot.neverShown;  // once shown, it is the user's
  session.targets = snapshot.targets;
  session.lastSeenAt = now;
}

// The ttys of a listing; throws when they do not tell its tabs apart.
std::unordered_set<std::string_view> distinctTTYs(const std::vector<TerminalTabSnapshot>& snapshots) {
  std::unordered_set<std::string_view> ttys;
  for (const auto& snapshot : snapshots) {
    if (snapshot.tty.empty() || !ttys.insert(snapshot.tty).second) throw catalogue::ambiguousTTY();
  }
  return ttys;
}

}  // namespace

SessionRegistry::SessionRegistry(const Uuid& generation, UuidSource uuid)
    : generation_(generation), uuid_(std::move(uuid)) {}

std::vector<TerminalSession> SessionRegistry::reconcile(const std::vector<TerminalTabSnapshot>& snapshots,
                                                        SessionPolicy policy, Date now) {
  const auto ttys = distinctTTYs(snapshots);
  const auto foundPermission =
      policy == SessionPolicy::safe ? SessionPermission::managed : SessionPermission::readOnly;
  const MutexLock lock(mutex_);
  for (auto& [id, session] : sessions_) {
    if (!ttys.contains(session.tty)) retire(session);
  }
  for (const auto& snapshot : snapshots) {
    auto* known = sessionOfTTY(snapshot.tty);
    if (known == nullptr) {
      // A window that an earlier run opened is no tab of the user's own.
      add(unusedId(), snapshot, snapshot.madeByBridge ? SessionPermission::managed : foundPermission,
          /*bridgeCreated=*/false, now);
    } else if (known->windowId == snapshot.windowId) {
      refresh(*known, snapshot, now);
    } else {
      // The caller sees the old id disappear before a new one is issued for the tab.
      retire(*known);
    }
  }
  return validSessions();
}

TerminalSession SessionRegistry::registerCreated(const TerminalTabSnapshot& snapshot, Date now) {
  const MutexLock lock(mutex_);
  auto* known = sessionOfTTY(snapshot.tty);
  if (known != nullptr && known->windowId != snapshot.windowId) {
    // The system gave the tty of a tab that closed unseen to the new one; its id stays with the closed tab.
    retire(*known);
    known = nullptr;
  }
  if (known == nullptr) {
    return add(uuid_(), snapshot, SessionPermission::managed, /*bridgeCreated=*/true, now);
  }
  known->permission = SessionPermission::managed;
  known->bridgeCreated = true;
  known->neverShown = known->neverShown && snapshot.neverShown;
  known->lastSeenAt = now;
  return *known;
}

std::vector<TerminalSession> SessionRegistry::currentSessions() const {
  const MutexLock lock(mutex_);
  return validSessions();
}

TerminalSession SessionRegistry::session(const Uuid& id) const {
  const MutexLock lock(mutex_);
  return requireValid(id);
}

std::optional<std::string> SessionRegistry::ttyOf(const Uuid& id) const {
  const MutexLock lock(mutex_);
  const auto found = sessions_.find(id);
  if (found == sessions_.end() || found->second.validity != SessionValidity::valid) return std::nullopt;
  return found->second.tty;
}

std::optional<SessionPermission> SessionRegistry::lastPermission(const Uuid& id) const {
  const MutexLock lock(mutex_);
  const auto found = sessions_.find(id);
  if (found == sessions_.end()) return std::nullopt;
  return found->second.permission;
}

TerminalSession SessionRegistry::validate(const Uuid& id, const std::vector<TerminalTabSnapshot>& snapshots,
                                          Date now) {
  const MutexLock lock(mutex_);
  auto& session = lookUp(id);
  const TerminalTabSnapshot* match = nullptr;
  std::size_t matches = 0;
  for (const auto& snapshot : snapshots) {
    if (snapshot.tty != session.tty) continue;
    match = &snapshot;
    ++matches;
  }
  if (matches != 1 || match->windowId != session.windowId) {
    retire(session);
    throw catalogue::sessionStale(session.reference());
  }
  refresh(session, *match, now);
  return session;
}

TerminalSession SessionRegistry::setPermission(SessionPermission permission, const Uuid& id) {
  const MutexLock lock(mutex_);
  auto& session = lookUp(id);
  session.permission = permission;
  return session;
}

std::optional<TerminalSession> SessionRegistry::tighten(SessionPermission permission, const Uuid& id) {
  const MutexLock lock(mutex_);
  auto& session = lookUp(id);
  if (isStricter(session.permission, permission)) return std::nullopt;
  session.permission = permission;
  return session;
}

void SessionRegistry::markRequest(const Uuid& id, Date at) {
  const MutexLock lock(mutex_);
  const auto found = sessions_.find(id);
  if (found != sessions_.end()) found->second.lastRequestAt = at;
}

TerminalSession& SessionRegistry::lookUp(const Uuid& id) {
  requireValid(id);
  return sessions_.at(id);
}

const TerminalSession& SessionRegistry::requireValid(const Uuid& id) const {
  const auto found = sessions_.find(id);
  if (tombstones_.contains(id) || found == sessions_.end()) throw catalogue::sessionNotFound(id);
  const auto& session = found->second;
  if (session.registryGeneration != generation_ || session.validity != SessionValidity::valid) {
    throw catalogue::sessionStale(session.reference());
  }
  return session;
}

std::vector<TerminalSession> SessionRegistry::validSessions() const {
  std::vector<TerminalSession> valid;
  for (const auto& [id, session] : sessions_) {
    if (session.validity == SessionValidity::valid) valid.push_back(session);
  }
  std::stable_sort(valid.begin(), valid.end(), [](const auto& a, const auto& b) {
    return std::tie(a.windowIndex, a.tabIndex) < std::tie(b.windowIndex, b.tabIndex);
  });
  return valid;
}

TerminalSession* SessionRegistry::sessionOfTTY(const std::string& tty) {
  const auto mapped = sessionByTTY_.find(tty);
  if (mapped == sessionByTTY_.end()) return nullptr;
  const auto found = sessions_.find(mapped->second);
  return found == sessions_.end() ? nullptr : &found->second;
}

TerminalSession& SessionRegistry::add(const Uuid& id, const TerminalTabSnapshot& snapshot,
                                      SessionPermission permission, bool bridgeCreated, Date now) {
  sessionByTTY_[snapshot.tty] = id;
  return sessions_[id] = TerminalSession(id, generation_, snapshot, permission, bridgeCreated, now, now,
                                         std::nullopt, SessionValidity::valid);
}

Uuid SessionRegistry::unusedId() {
  while (true) {
    const auto id = uuid_();
    if (!sessions_.contains(id) && !tombstones_.contains(id)) return id;
  }
}

void SessionRegistry::retire(TerminalSession& session) {
  session.validity = SessionValidity::stale;
  tombstones_.insert(session.sessionId);
  const auto mapped = sessionByTTY_.find(session.tty);
  if (mapped != sessionByTTY_.end() && mapped->second == session.sessionId) sessionByTTY_.erase(mapped);
}

}  // namespace velmora
