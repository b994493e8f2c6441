#include "BridgeCore/PermissionMemory.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <unordered_map>

#include "BridgeCore/StructuredErrorMapper.h"

namespace velmora {

namespace {

// Tabs of runs and servers that are gone are forgotten when there are this many.
constexpr std::size_t mostTabs = 4096;

constexpr bool restricts(SessionPermission permission) {
  return permission == SessionPermission::readOnly || permission == SessionPermission::blocked;
}

static_assert(isStricter(SessionPermission::readOnly, SessionPermission::allowed));
static_assert(isStricter(SessionPermission::blocked, SessionPermission::readOnly));
static_assert(!isStricter(SessionPermission::allowed, SessionPermission::managed));

}  // namespace

void PermissionMemory::load() {
  if (store_ == nullptr) return;
  std::vector<KeptPermission> kept;
  try {
    kept = store_->load();
  } catch (...) {
    log_.error("settings", store_->fileURL().string() + ": " + problemSentence(std::current_exception()) +
                               " Until it is mended or removed, sessions are found as readOnly at best.");
    const MutexLock lock(mutex_);
    isUnreadable_ = true;
    throw;
  }
  const MutexLock lock(mutex_);
  kept_ = std::move(kept);
}

std::vector<TerminalSession> PermissionMemory::restricted(std::vector<TerminalSession> sessions,
                                                          const std::vector<TerminalTabSnapshot>& listing) {
  std::unordered_map<std::string_view, const TerminalTabSnapshot*> tabs;
  for (const auto& tab : listing) tabs.emplace(tab.tty, &tab);
  for (auto& session : sessions) {
    const auto tab = tabs.find(session.tty);
    if (tab == tabs.end() || !tab->second->identity) continue;
    const auto limit = limitOf(*tab->second->identity, session.sessionId);
    if (limit && !session.bridgeCreated && isStricter(*limit, session.permission))
      session = registry_.setPermission(*limit, session.sessionId);
  }
  forgetGone(listing);
  return sessions;
}

// What restricts a session that its tab did not have before; nothing for the one that it had.
std::optional<SessionPermission> PermissionMemory::limitOf(const TabIdentity& tab, const Uuid& session) {
  Uuid former;
  {
    const MutexLock lock(mutex_);
    const auto [known, isNew] = sessionOf_.try_emplace(tab, session);
    if (isNew) {
      if (isUnreadable_) return SessionPermission::readOnly;
      const auto kept =
          std::find_if(kept_.begin(), kept_.end(), [&](const auto& entry) { return entry.tab == tab; });
      return kept == kept_.end() ? std::nullopt : std::optional(kept->permission);
    }
    if (known->second == session) return std::nullopt;
    former = std::exchange(known->second, session);
  }
  return registry_.lastPermission(former);
}

// A terminal that still runs and no longer lists a tab has closed it.
void PermissionMemory::forgetGone(const std::vector<TerminalTabSnapshot>& listing) {
  std::set<TabIdentity> listed;
  std::set<std::string_view> terminals;
  for (const auto& tab : listing) {
    if (!tab.identity) continue;
    listed.insert(*tab.identity);
    terminals.insert(tab.identity->terminal);
  }
  const MutexLock lock(mutex_);
  std::erase_if(kept_, [&](const auto& entry) {
    return terminals.contains(entry.tab.terminal) && !listed.contains(entry.tab);
  });
  if (sessionOf_.size() > mostTabs)
    std::erase_if(sessionOf_, [&](const auto& entry) { return !listed.contains(entry.first); });
}

void PermissionMemory::choose(const TerminalSession& session) {
  const MutexLock order(saving_);
  std::vector<KeptPermission> kept;
  {
    const MutexLock lock(mutex_);
    const auto tab = std::find_if(sessionOf_.begin(), sessionOf_.end(),
                                  [&](const auto& entry) { return entry.second == session.sessionId; });
    if (tab == sessionOf_.end()) return;
    std::erase_if(kept_, [&](const auto& entry) { return entry.tab == tab->first; });
    if (restricts(session.permission)) kept_.push_back({tab->first, session.permission});
    if (isUnreadable_ || store_ == nullptr) return;
    kept = kept_;
  }
  try {
    store_->save(std::move(kept));
  } catch (...) {
    log_.warning("settings", "a permission will be forgotten with this run: " +
                                 problemSentence(std::current_exception()));
  }
}

}  // namespace velmora
