// Text as its reader sees it, over ICU with a fast path for plain text.
// A character is an extended grapheme cluster (UAX #29): CR LF is one, a family emoji is one, Hangul jamo
// combine. Every function is pure and may be called from any thread. Texts are UTF-8; an ill-formed
// sequence counts like the U+FFFD that repairUtf8 puts in its place. Link the target BridgeText.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmora {

std::int64_t characterCount(std::string_view text);

/// The first `count` characters of `text` (all of it when it is shorter, none when count <= 0).
std::string_view firstCharacters(std::string_view text, std::int64_t count);

/// The end of a text and how long the whole was.
struct TextEnd {
  std::string_view text;
  std::int64_t totalCharacters;
};

/// The last `count` characters of `text` (all of it when it is shorter, none when count <= 0), with the
/// number of characters of the whole, counted in the same pass.
TextEnd lastCharacters(std::string_view text, std::int64_t count);

/// Whether `text` contains `part`, whatever the case, by the rules of the user's locale.
bool containsIgnoringCase(std::string_view text, std::string_view part);

}  // namespace velmora
