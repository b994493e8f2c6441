#include "TerminalAutomation/Tmux/PaneDirectory.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>

namespace velmora {

namespace {

/// Smaller comes nearer to the front.
using RowRank = std::tuple<std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t>;

std::vector<ClientRow> byLatestActivity(std::vector<ClientRow> clients) {
  std::stable_sort(clients.begin(), clients.end(), [](const ClientRow& left, const ClientRow& right) {
    return std::tie(left.activity, left.created) > std::tie(right.activity, right.created);
  });
  return clients;
}

RowRank rankOf(const PaneRow& row, const std::vector<ClientRow>& clients) {
  std::int64_t shown = std::numeric_limits<std::int64_t>::max();
  for (std::size_t i = 0; i < clients.size(); ++i) {
    if (clients[i].session == row.session && clients[i].window == row.window) {
      shown = static_cast<std::int64_t>(i);
      break;
    }
  }
  return {shown, -row.sessionActivity, row.session, row.stackIndex, row.window};
}

std::int64_t lastAttachTo(const PaneRow& pane, const std::vector<ClientRow>& clients) {
  std::int64_t last = 0;
  for (const ClientRow& client : clients) {
    if (client.pane == pane.pane) last = std::max(last, client.created);
  }
  return last;
}

/// A terminal that was just attached is active too, without any key.
std::int64_t lastKeyIn(const PaneRow& pane, const std::vector<ClientRow>& clients) {
  std::int64_t last = 0;
  for (const ClientRow& client : clients) {
    if (client.pane == pane.pane && client.activity > client.created) last = std::max(last, client.activity);
  }
  return last;
}

}  // namespace

std::vector<ArrangedPane> arrangePanes(const TmuxListing& listing) {
  const std::vector<ClientRow> clients = byLatestActivity(listing.clients);

  struct Window {
    RowRank rank;
    std::int64_t session;
  };
  std::map<std::int64_t, Window> windows;
  std::map<std::int64_t, std::int64_t> activities;              // by window
  std::map<std::string, std::pair<bool, std::int64_t>> owners;  // tty: alive, pane; the greater one has it
  for (const PaneRow& row : listing.panes) {
    const RowRank rank = rankOf(row, clients);
    const auto [window, isNew] = windows.try_emplace(row.window, Window{rank, row.session});
    if (!isNew && rank < window->second.rank) window->second = {rank, row.session};
    std::int64_t& activity = activities[row.window];
    activity = std::max(activity, row.sessionActivity);
    auto& owner = owners[row.tty];
    owner = std::max(owner, {!row.dead, row.pane});
  }

  std::vector<std::pair<RowRank, std::int64_t>> order;
  order.reserve(windows.size());
  for (const auto& [number, window] : windows) order.emplace_back(window.rank, number);
  std::sort(order.begin(), order.end());
  std::map<std::int64_t, std::int64_t> indexes;
  for (std::size_t i = 0; i < order.size(); ++i) indexes[order[i].second] = static_cast<std::int64_t>(i) + 1;

  std::vector<ArrangedPane> panes;
  std::map<std::int64_t, std::int64_t> tabs;
  std::map<std::int64_t, bool> seen;
  for (const PaneRow& row : listing.panes) {
    // A session may show one window twice; the first of its rows counts.
    if (windows.at(row.window).session != row.session || seen[row.pane]) continue;
    seen[row.pane] = true;
    const std::int64_t tab = ++tabs[row.window];
    if (row.tty.empty() || owners.at(row.tty).second != row.pane) continue;
    panes.push_back({row, indexes.at(row.window), tab, lastKeyIn(row, clients), lastAttachTo(row, clients),
                     activities.at(row.window)});
  }
  std::stable_sort(panes.begin(), panes.end(), [](const ArrangedPane& left, const ArrangedPane& right) {
    return std::tie(left.windowIndex, left.tabIndex) < std::tie(right.windowIndex, right.tabIndex);
  });
  return panes;
}

std::string paneTitle(const PaneRow& row) {
  // Until a program sets a title, tmux gives the host's name.
  const bool named =
      !row.title.empty() && row.title != row.host && row.title != row.host.substr(0, row.host.find('.'));
  const std::string& title = named ? row.title : row.windowName;
  return title.empty() ? row.sessionName : row.sessionName + ": " + title;
}

TabIdentity paneIdentity(const PaneRow& row) {
  return {.terminal = "tmux " + std::to_string(row.serverStart) + " " + std::to_string(row.serverProcess),
          .tab = "%" + std::to_string(row.pane)};
}

std::vector<std::string> paneTargets(const PaneRow& row) {
  return {"%" + std::to_string(row.pane),
          row.sessionName + ":" + std::to_string(row.windowNumber) + "." + std::to_string(row.paneNumber)};
}

std::int64_t PaneDirectory::enter(const ArrangedPane& pane) {
  const MutexLock lock(mutex_);
  const std::int64_t windowId = windowIdOf(pane.row);
  latest_.insert_or_assign(pane.row.tty, Entry{windowId, pane.row, pane.windowIndex, pane.tabIndex});
  return windowId;
}

void PaneDirectory::recallPlace(ArrangedPane& pane) const {
  const MutexLock lock(mutex_);
  const auto entry = latest_.find(pane.row.tty);
  if (entry == latest_.end()) return;
  pane.windowIndex = entry->second.windowIndex;
  pane.tabIndex = entry->second.tabIndex;
}

std::optional<PaneRow> PaneDirectory::paneOn(const std::string& tty) const {
  const MutexLock lock(mutex_);
  const auto found = latest_.find(tty);
  return found == latest_.end() ? std::nullopt : std::optional(found->second.row);
}

std::optional<PaneRow> PaneDirectory::find(const TabAddress& tab) const {
  const MutexLock lock(mutex_);
  const auto entry = latest_.find(tab.tty);
  if (entry == latest_.end() || entry->second.windowId != tab.windowId) return std::nullopt;
  return entry->second.row;
}

std::int64_t PaneDirectory::windowIdOf(const PaneRow& row) {
  constexpr std::int64_t startRange = std::int64_t{1} << 29;
  constexpr std::int64_t numberRange = std::int64_t{1} << 24;
  // Generations lie twelve days apart, so that they do not meet another server's start.
  constexpr std::int64_t generationStep = std::int64_t{1} << 20;

  if (occupants_.size() >= mostRemembered) forgetSome(row.serverStart);
  const auto [entry, isNew] =
      occupants_.try_emplace({row.serverStart, row.window, row.tty},
                             Occupant{row.pane, row.process, row.serverProcess, firstGeneration_});
  Occupant& occupant = entry->second;
  if (occupant.pane != row.pane || occupant.process != row.process ||
      occupant.serverProcess != row.serverProcess) {
    occupant = {row.pane, row.process, row.serverProcess, occupant.generation + 1};
  }
  const std::int64_t start = (row.serverStart + occupant.generation * generationStep) % startRange;
  return start * numberRange + row.window % numberRange;
}

void PaneDirectory::forgetSome(std::int64_t serverStart) {
  std::erase_if(occupants_,
                [serverStart](const auto& entry) { return std::get<0>(entry.first) != serverStart; });
  if (occupants_.size() < mostRemembered) return;
  // The windows with the smallest numbers are the oldest. Whoever comes to their places later must not be
  // taken for those who were there, so the count goes on from theirs.
  const auto end = std::next(occupants_.begin(), forgottenAtOnce);
  for (auto entry = occupants_.begin(); entry != end; ++entry) {
    firstGeneration_ = std::max(firstGeneration_, entry->second.generation + 1);
  }
  occupants_.erase(occupants_.begin(), end);
}

}  // namespace velmora
