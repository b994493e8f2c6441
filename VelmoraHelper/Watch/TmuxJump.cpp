// Apart from the loop, so that tests can answer for tmux.
#include "VelmoraHelper/Watch/TmuxJump.h"

#include <algorithm>

namespace velmora {

std::string jumpTo(const TerminalSession& session, const std::vector<std::string>& targets,
                   const Environment& environment, const ProgramAsking& ask) {
  const auto pane = std::find_if(targets.begin(), targets.end(),
                                 [](const auto& target) { return target.starts_with('%'); });
  if (pane == targets.end()) return "This session is no pane of tmux.";
  if (environmentValue(environment, "TMUX").empty())
    return "This runs outside tmux; there, `tmux switch-client -t " + *pane + "` shows the session.";
  // Pane numbers mean nothing in another server.
  const auto tty = ask({"tmux", "display-message", "-p", "-t", *pane, "#{pane_tty}"});
  if (tty.end != ProgramAnswer::End::exited || tty.exitStatus != 0 || tty.output != session.tty + "\n")
    return "The session is in another tmux server than this one.";
  const auto shown = ask({"tmux", "switch-client", "-t", *pane, ";", "select-window", "-t", *pane, ";",
                          "select-pane", "-t", *pane});
  return shown.end == ProgramAnswer::End::exited && shown.exitStatus == 0 ? "" : "tmux did not switch to it.";
}

}  // namespace velmora
