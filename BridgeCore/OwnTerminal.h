// Whether a process speaks for the user: it runs on a terminal of the user's own, which no agent can type
// into through the bridge. Pure logic over what the system tells of processes.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>

#include "System/RunningProcess.h"

namespace velmora {

/// What the system tells of a process; nothing when there is none.
using ProcessLookup = std::function<std::optional<RunningProcess>(pid_t)>;

/// The controlling terminal of `process`. Throws a StructuredError (sessionNotAllowed, in words for the user,
/// without an operation) when it has none, when it or a process that it descends from runs on one of
/// `driven`, the terminals that the bridge drives, or below tmux or screen, into whose panes an agent could
/// type from outside, or when nobody can tell.
std::filesystem::path ownTerminalOf(pid_t process, const ProcessLookup& lookUp,
                                    const std::set<std::string>& driven);

}  // namespace velmora
