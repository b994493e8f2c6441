// TmuxOperations: what brings a pane to the front.
#include <algorithm>
#include <tuple>
#include <utility>

#include "System/FindProgram.h"
#include "TerminalAutomation/Tmux/TmuxOperations.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr auto attachPause = 20ms;
constexpr int attachPolls = 150;

std::string windowTarget(const PaneRow& pane) {
  return "$" + std::to_string(pane.session) + ":@" + std::to_string(pane.window);
}

std::string paneTarget(const PaneRow& pane) { return "%" + std::to_string(pane.pane); }

/// The client whose user pressed a key last; the end when nobody is attached.
auto latestClient(const std::vector<ClientRow>& clients) {
  return std::max_element(clients.begin(), clients.end(), [](const ClientRow& left, const ClientRow& right) {
    return std::tie(left.activity, left.created) < std::tie(right.activity, right.created);
  });
}

}  // namespace

void TmuxOperations::select(Deadline deadline, std::vector<std::string> arguments) const {
  if (auto failure = tmuxFailure(invoke(deadline, std::move(arguments)), TmuxEffect::none))
    throw std::move(*failure);
}

void TmuxOperations::focus(const TabAddress& tab, Deadline deadline) {
  // Selecting has no guard in the server, and which terminal was used last changes by the second.
  const TmuxListing listing = list(deadline, Listed::panesAndClients);
  std::optional<PaneRow> found;
  for (ArrangedPane& pane : arrangePanes(listing)) {
    if (panes_.enter(pane) == tab.windowId && pane.row.tty == tab.tty) found = std::move(pane.row);
  }
  if (!found) throw tmuxError::stale();
  const auto client = latestClient(listing.clients);
  if (client == listing.clients.end()) {
    select(deadline,
           {"select-window", "-t", windowTarget(*found), ";", "select-pane", "-t", paneTarget(*found)});
    if (!showInDesktopTerminal(deadline, *found)) throw tmuxError::terminalDidNotOpen();
    return;
  }
  // The client's own session when it holds the window; it would leave it otherwise.
  for (const PaneRow& row : listing.panes) {
    if (row.pane == found->pane && row.session == client->session) found = row;
  }
  select(deadline,
         {"switch-client", "-c", client->name, "-t", windowTarget(*found) + "." + paneTarget(*found)});
}

bool TmuxOperations::showInDesktopTerminal(Deadline deadline, const PaneRow& pane) const {
  // The pane names its session too, and unlike "$1" it means nothing to a shell that a terminal may use.
  const auto program = options_.program ? options_.program : findProgram("tmux", options_.environment);
  if (!program || !parts_.desktop->open({program->string(), "-u", "-S", parts_.transport->socketPath(),
                                         "attach-session", "-t", paneTarget(pane)})) {
    return true;  // no screen at hand: attaching to this session shows it
  }
  for (int poll = 0; poll < attachPolls; ++poll) {
    if (!list(deadline, Listed::panesAndClients).clients.empty()) return true;
    options_.sleep(attachPause);
  }
  return false;
}

}  // namespace velmora
