// Whether a pane's shell waits at its prompt.
#pragma once

#include <sys/types.h>

#include <string>

#include "TerminalAutomation/Tmux/ProcessTable.h"

namespace velmora {

/// True unless the pane's first process is an interactive shell that has the terminal's foreground and
/// edits a line. A program that cannot be seen counts as busy. sh, dash and ash have no line editor, so
/// theirs is told only from a command that runs in its own process group, from a loop on the processor or
/// from a line that is not shown. Of bash, zsh and fish also a question for one key is busy.
bool paneIsBusy(const ProcessTable& processes, pid_t firstProcess, const std::string& tty);

}  // namespace velmora
