// From tmux's capture to the text that people see.
#pragma once

#include <string>

namespace velmora {

/// Without the blanks at the ends of lines, the empty lines at the end and the last line end; well-formed
/// UTF-8.
std::string tidyPaneText(std::string captured);

}  // namespace velmora
