// Which commands may go to a tmux server without the tmux program.
#pragma once

#include <string>
#include <vector>

namespace velmora {

/// Whether the command list holds only commands that need nothing of the program but to hand them over: none
/// that starts a server or a program, opens a file or takes over a terminal. What is not known needs the
/// program, and so does a list that does not fit in one message. Pure.
bool mayGoDirectly(const std::vector<std::string>& arguments);

}  // namespace velmora
