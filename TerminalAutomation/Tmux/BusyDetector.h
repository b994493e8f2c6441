// Whether a pane's shell waits at its prompt.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "TerminalAutomation/Tmux/ProcessTable.h"

namespace velmora {

enum class PaneLook {
  idle,
  busy,
  /// A shell without a line editor is on the processor: busy when it still is a moment later. At its prompt
  /// it is there only while it handles a signal or waits for its turn.
  running,
};

struct PaneShell {
  pid_t process;
  ProcessState state;
};

/// The pane's first process, or the shell inside when that is contained (ContainedShell) and has the
/// terminal's foreground. Nothing when the first process cannot be looked at.
std::optional<PaneShell> shellOfPane(const ProcessTable& processes, pid_t firstProcess);

/// Busy unless the pane's shell is an interactive one that has the terminal's foreground and
/// edits a line. A program that cannot be seen counts as busy. sh, dash and ash have no line editor, so
/// theirs is told only from a command that runs in its own process group, from a loop on the processor or
/// from a line that is not shown. Of bash, zsh and fish also a question for one key is busy.
PaneLook lookAtPane(const ProcessTable& processes, pid_t firstProcess, const std::string& tty);

}  // namespace velmora
