// UTF-8 checks that need no Unicode tables.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora {

/// Whether `text` is well-formed UTF-8 (no overlong forms, surrogates or code points past U+10FFFF).
bool isValidUtf8(std::string_view text);

/// `text` with each maximal ill-formed run of bytes replaced by U+FFFD, as Unicode recommends.
std::string repairUtf8(std::string_view text);

/// How many bytes a well-formed code point has that begins with `lead`.
constexpr std::size_t codePointBytes(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  return byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

/// The start of `text`, `most` bytes at most; a well-formed text is cut between two code points.
std::string_view firstBytes(std::string_view text, std::size_t most);

/// `text`, repaired, with every control character replaced by "?", so that text of others cannot steer the
/// terminal that shows it, nor begin a line of its own in a log.
std::string plainText(std::string_view text);

}  // namespace velmora
