// Text in the cells of a terminal: how wide it is, and the part of it that fits. Widths are the locale's
// (wcwidth), as the terminal library counts them, so that columns stay in line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// `text` as it may be shown: no control character, nothing that turns the direction of writing or joins
/// emoji, no mark without a letter and few on one; what has no width in the locale is "?". UTF-8.
std::string shownText(std::string_view text);

/// How many columns a well-formed text without control characters takes; what has no width in the locale
/// takes one.
int columnsOf(std::string_view text);

/// As much of a shown text as fits into `columns`; where something is left out, a mark stands at the end.
std::string clipped(std::string_view shown, int columns);

/// `clipped`, with spaces behind it up to exactly `columns`.
std::string padded(std::string_view shown, int columns);

/// A shown text in lines of `columns` (at least 2) at most; one line for an empty text.
std::vector<std::string> wrapped(std::string_view shown, int columns);

/// The code points of a well-formed text.
std::wstring wideText(std::string_view text);

}  // namespace velmora
