// The look of one terminal cell, and the SGR parameters ("1;38;5;196") that change it. Pure values and
// functions; any thread.
#pragma once

#include <cstdint>
#include <string_view>

namespace velmora {

/// A colour as the terminal was told it: its own default, one of the 256 of the palette, or red-green-blue.
struct CellColour {
  enum class Kind : std::uint8_t { default_, palette, rgb };
  Kind kind = Kind::default_;
  std::uint8_t red = 0;  // the index, for Kind::palette
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  static constexpr CellColour palette(std::uint8_t index) { return {Kind::palette, index, 0, 0}; }
  static constexpr CellColour rgb(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    return {Kind::rgb, r, g, b};
  }
  bool operator==(const CellColour&) const = default;
};

enum class Underline : std::uint8_t { none, single, double_, curly, dotted, dashed };

struct CellStyle {
  CellColour foreground;
  CellColour background;
  CellColour underlineColour;  // default_: that of the text
  Underline underline = Underline::none;
  bool bold = false;
  bool dim = false;
  bool italic = false;
  bool reverse = false;
  bool hidden = false;
  bool strike = false;
  bool overline = false;

  bool operator==(const CellStyle&) const = default;
};

/// Applies the parameters of one SGR sequence (what stands between "ESC [" and "m") to `style`. Both
/// spellings of the longer colours are read (38;5;n and 38:5:n, 38;2;r;g;b and 38:2:r:g:b with or without a
/// colour space). Unknown, incomplete and out-of-range parameters change nothing; blink is not drawn.
void applySgr(std::string_view parameters, CellStyle& style);

}  // namespace velmora
