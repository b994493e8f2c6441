// Brings the user's own tmux to a session.
#pragma once

#include <string>

#include "LocalControl/PersonMessages.h"
#include "System/Environment.h"
#include "VelmoraHelper/Commands/AskProgram.h"

namespace velmora {

/// Has the tmux client that this program runs in show the session. Returns why it cannot, empty when it does:
/// this runs outside tmux, in another server's, or the session has no pane.
std::string jumpTo(const TerminalSession& session, const std::vector<std::string>& targets,
                   const Environment& environment, const ProgramAsking& ask);

}  // namespace velmora
