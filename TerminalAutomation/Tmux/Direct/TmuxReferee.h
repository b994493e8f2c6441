// Decides whether a tmux server may be spoken to without the tmux program.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <string_view>

#include "TerminalAutomation/Tmux/Direct/TmuxDirectClient.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

struct TmuxVerdict {
  enum class Way {
    direct,     ///< At `server` only.
    program,    ///< Because of `reason`.
    undecided,  ///< The server could not be asked, or changed all the time. Nothing speaks against it.
    refused,    ///< The server runs as another user.
  };

  Way way = Way::undecided;
  pid_t server = 0;
  std::string reason{};
};

/// Whether every command has been compared with the program's at servers of this version, and none differed.
/// tmux's protocol is its own affair: it changes between versions without a new number.
bool isTestedTmuxVersion(std::string_view version);

/// Asks `program`, which also tells the version, and if that is tested asks the same directly. The two must
/// agree on the server's process, its start, and every pane.
TmuxVerdict judgeTmux(TmuxTransport& program, TmuxDirectClient& direct,
                      std::chrono::steady_clock::time_point deadline);

}  // namespace velmora
