#include "System/Utf8.h"

#include <cstdint>
#include <cstring>

namespace velmora {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

struct Sequence {
  std::size_t length;  // bytes that belong together
  bool valid;
};

// The sequence that starts at `rest` (not empty), by table 3-7 of the Unicode standard.
Sequence sequenceAt(std::string_view rest) {
  const auto byteAt = [&](std::size_t index) { return static_cast<std::uint8_t>(rest[index]); };
  const std::uint8_t lead = byteAt(0);
  if (lead < 0x80) return {1, true};
  std::size_t length = 0;
  std::uint8_t secondLow = 0x80;
  std::uint8_t secondHigh = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) secondLow = 0xA0;
    if (lead == 0xED) secondHigh = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) secondLow = 0x90;
    if (lead == 0xF4) secondHigh = 0x8F;
  } else {
    return {1, false};
  }
  for (std::size_t index = 1; index < length; ++index) {
    const std::uint8_t low = index == 1 ? secondLow : std::uint8_t{0x80};
    const std::uint8_t high = index == 1 ? secondHigh : std::uint8_t{0xBF};
    if (index >= rest.size() || byteAt(index) < low || byteAt(index) > high) return {index, false};
  }
  return {length, true};
}

// How many bytes at the start of `rest` are ASCII, eight at a time.
std::size_t asciiRun(std::string_view rest) {
  std::size_t index = 0;
  for (; index + 8 <= rest.size(); index += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, rest.data() + index, sizeof word);
    if ((word & 0x8080808080808080u) != 0) break;
  }
  return index;
}

// The index of the first ill-formed byte, or the size of `text`.
std::size_t validPrefix(std::string_view text) {
  std::size_t index = 0;
  while (index < text.size()) {
    index += asciiRun(text.substr(index));
    if (index == text.size()) break;
    const auto sequence = sequenceAt(text.substr(index));
    if (!sequence.valid) return index;
    index += sequence.length;
  }
  return index;
}

}  // namespace

bool isValidUtf8(std::string_view text) { return validPrefix(text) == text.size(); }

std::string repairUtf8(std::string_view text) {
  std::string repaired;
  repaired.reserve(text.size());
  while (!text.empty()) {
    const auto valid = validPrefix(text);
    repaired.append(text.substr(0, valid));
    text.remove_prefix(valid);
    if (text.empty()) break;
    repaired.append(replacementCharacter);
    text.remove_prefix(sequenceAt(text).length);
  }
  return repaired;
}

std::string_view firstBytes(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80) --most;
  return text.substr(0, most);
}

std::string plainText(std::string_view text) {
  const std::string valid = repairUtf8(text);
  std::string plain;
  plain.reserve(valid.size());
  for (std::size_t index = 0; index < valid.size(); ++index) {
    const auto byte = static_cast<unsigned char>(valid[index]);
    // U+0080 to U+009F are control characters of two bytes.
    const bool isLateControl = byte == 0xC2 && static_cast<unsigned char>(valid[index + 1]) < 0xA0;
    if (isLateControl) ++index;
    plain.push_back(isLateControl || byte < 0x20 || byte == 0x7F ? '?' : valid[index]);
  }
  return plain;
}

}  // namespace velmora
