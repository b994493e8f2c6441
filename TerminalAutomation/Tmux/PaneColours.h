// Text with its colours, as `tmux capture-pane -e` gives it: SGR sequences, whose state runs across lines.
// Nothing in it is trusted. Pure.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "BridgeModels/Text.h"

namespace velmora {

/// The text with no sequences but SGR and no control characters but tabs and line ends; DEC line drawing
/// becomes the characters that it shows.
std::string onlyColours(std::string_view captured);

/// Without the SGR sequences of what onlyColours returned.
std::string withoutColours(std::string_view coloured);

/// The text after the first `bytes` bytes, which end outside of a sequence, with the colours that hold there.
std::string colouredAfter(std::string_view coloured, std::size_t bytes);

struct ColouredEnd {
  std::string text;
  std::int64_t totalCharacters;  ///< More than `text` has when anything was cut.
};

/// The end of the text, in at most `maxCharacters` characters, those of sequences among them: never cut in a
/// sequence, in the colours that hold where it begins, and without any at its end.
ColouredEnd colouredEnd(std::string_view coloured, std::int64_t maxCharacters);

}  // namespace velmora
