#include "VelmoraHelper/Commands/CellText.h"

#include <wchar.h>

#include <cstddef>
#include <cstdint>

#include "System/Utf8.h"

namespace velmora {

namespace {

// Terminals disagree about how wide these make what stands beside them; without them every one shows the rest
// alike. Joiners, directions, variation selectors, the byte order mark.
bool isInvisible(char32_t c) {
  return (c >= 0x200B && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) ||
         (c >= 0xFE00 && c <= 0xFE0F) || (c >= 0xE0000 && c <= 0xE0FFF) || c == 0xFEFF || c == 0x061C;
}

struct CodePoint {
  char32_t value;
  std::size_t bytes;
};

// The first code point of a well-formed text.
CodePoint firstOf(std::string_view text) {
  const auto byte = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
  const auto rest = [&](std::size_t index) { return static_cast<char32_t>(byte(index) & 0x3F); };
  if (byte(0) < 0x80) return {byte(0), 1};
  if (byte(0) < 0xE0) return {(byte(0) & 0x1Fu) << 6 | rest(1), 2};
  if (byte(0) < 0xF0) return {(byte(0) & 0x0Fu) << 12 | rest(1) << 6 | rest(2), 3};
  return {(byte(0) & 0x07u) << 18 | rest(1) << 12 | rest(2) << 6 | rest(3), 4};
}

int widthOf(char32_t c) { return c < 0x7F ? 1 : ::wcwidth(static_cast<wchar_t>(c)); }

// What of `shown` fits into `columns`, marks of the last letter included.
struct Fit {
  std::size_t bytes = 0;
  int columns = 0;
};

Fit fitting(std::string_view shown, int columns) {
  Fit fit;
  while (fit.bytes < shown.size()) {
    const auto next = firstOf(shown.substr(fit.bytes));
    const int width = widthOf(next.value);
    if (fit.columns + width > columns) break;
    fit.bytes += next.bytes;
    fit.columns += width;
  }
  return fit;
}

std::string_view cutMark() { return ::wcwidth(L'\u2026') == 1 ? "\u2026" : "~"; }

}  // namespace

std::string shownText(std::string_view text) {
  constexpr int mostMarks = 3;  // more do not fit into a cell of the terminal library
  const auto plain = plainText(text);
  std::string shown;
  int marks = mostMarks;
  for (std::size_t index = 0; index < plain.size();) {
    const auto [value, bytes] = firstOf(std::string_view(plain).substr(index));
    const int width = widthOf(value);
    const bool isMark = width == 0;
    marks = isMark ? marks + 1 : 0;
    if (width < 0) {
      shown += '?';
    } else if (!isInvisible(value) && (!isMark || marks <= mostMarks)) {
      shown.append(plain, index, bytes);
    }
    index += bytes;
  }
  return shown;
}

int columnsOf(std::string_view text) {
  int columns = 0;
  for (std::size_t index = 0; index < text.size();) {
    const auto next = firstOf(text.substr(index));
    const int width = widthOf(next.value);
    columns += width < 0 ? 1 : width;
    index += next.bytes;
  }
  return columns;
}

std::string clipped(std::string_view shown, int columns) {
  if (columns <= 0) return {};
  const auto whole = fitting(shown, columns);
  if (whole.bytes == shown.size()) return std::string(shown);
  return std::string(shown.substr(0, fitting(shown, columns - 1).bytes)).append(cutMark());
}

std::string padded(std::string_view shown, int columns) {
  auto text = clipped(shown, columns);
  const int missing = columns - columnsOf(text);
  if (missing > 0) text.append(static_cast<std::size_t>(missing), ' ');
  return text;
}

std::vector<std::string> wrapped(std::string_view shown, int columns) {
  std::vector<std::string> lines;
  do {
    const auto fit = fitting(shown, columns);
    lines.emplace_back(shown.substr(0, fit.bytes));
    shown.remove_prefix(fit.bytes);
  } while (!shown.empty());
  return lines;
}

std::wstring wideText(std::string_view text) {
  std::wstring wide;
  for (std::size_t index = 0; index < text.size();) {
    const auto next = firstOf(text.substr(index));
    wide += static_cast<wchar_t>(next.value);
    index += next.bytes;
  }
  return wide;
}

}  // namespace velmora
