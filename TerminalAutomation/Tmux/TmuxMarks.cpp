// TmuxOperations' part that tells tmux itself what the bridge does: user options, for status-right and
// pane-border-format.
#include "TerminalAutomation/Tmux/TmuxOperations.h"

namespace velmora {

namespace {

constexpr const char* stateOption = "@velmora";
constexpr const char* permissionOption = "@velmora_permission";

}  // namespace

// Every option that is set redraws tmux's clients, so only what has changed is. Panes that have ended took
// their options with them. One call a pane: a pane that has just ended must not hold the others up.
void TmuxOperations::mark(const TerminalMarks& marks, Deadline deadline) {
  std::map<TabIdentity, std::pair<SessionPermission, std::int64_t>> wanted;
  std::string server = markedServer_;
  for (const auto& [tty, tab] : marks.tabs) {
    const auto row = panes_.paneOn(tty);
    if (!row) continue;
    auto identity = paneIdentity(*row);
    server = identity.terminal;
    wanted[std::move(identity)] = {tab.permission, row->pane};
  }
  if (server != markedServer_) marked_ = {};
  markedServer_ = server;

  const auto set = [&](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"set-option", "-q"});
    const TmuxAnswer answer = invoke(deadline, std::move(arguments));
    if (answer.end != TmuxAnswer::End::exited) throw *tmuxFailure(answer, TmuxEffect::none);
    return answer.exitStatus == 0;
  };
  for (const auto& [identity, pane] : wanted) {
    const auto& [permission, number] = pane;
    const auto known = marked_.permissions.find(identity);
    if (known != marked_.permissions.end() && known->second == permission) continue;
    set({"-p", "-t", "%" + std::to_string(number), permissionOption, std::string(wireName(permission))});
    marked_.permissions[identity] = permission;
  }
  for (auto known = marked_.permissions.begin(); known != marked_.permissions.end();) {
    if (wanted.contains(known->first)) {
      ++known;
      continue;
    }
    set({"-p", "-u", "-t", known->first.tab, permissionOption});
    known = marked_.permissions.erase(known);
  }
  if (marks.state == marked_.state) return;
  if (marks.state.empty() ? set({"-g", "-u", stateOption}) : set({"-g", stateOption, marks.state}))
    marked_.state = marks.state;
}

}  // namespace velmora
