// From tmux's capture to the text that people see.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "BridgeModels/Text.h"

namespace velmora {

/// Without the blanks at the ends of lines, the empty lines at the end and the last line end; well-formed
/// UTF-8.
std::string tidyPaneText(std::string captured);

/// The last characters of `text`, which is well-formed, and of those no more than eight bytes a character and
/// 900,000 in all: one character can have any number of marks, and an answer has to travel. The total is more
/// than is returned when anything was cut.
TextEnd boundedEnd(std::string_view text, std::int64_t maxCharacters);

}  // namespace velmora
