// How many columns a code point takes in tmux. tmux measures each code point for itself and then joins what
// has no width, so these are widths of code points; PaneCells does the joining. Pure; any thread.
#pragma once

namespace velmora {

/// 0 for what joins the cell before it (combining marks, joiners, variation selectors, the vowels and final
/// consonants of conjoining Hangul) and for controls, 2 for what East Asian Width calls wide or full-width
/// (emoji among them), else 1. Ambiguous characters are narrow.
int codePointWidth(char32_t codePoint);

/// The five skin tones. tmux up to 3.4 gives one behind an emoji two columns of its own.
constexpr bool isSkinTone(char32_t c) { return c >= 0x1F3FB && c <= 0x1F3FF; }

/// The letters that make flags in pairs. Each takes one column.
constexpr bool isRegionalIndicator(char32_t c) { return c >= 0x1F1E6 && c <= 0x1F1FF; }

inline constexpr char32_t zeroWidthJoiner = 0x200D;

}  // namespace velmora
