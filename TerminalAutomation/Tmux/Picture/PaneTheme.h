// The colours of pane pictures: a dark theme of our own, made for reading. Each of the sixteen named colours
// but black stands out from the background by a contrast of 4.5 or more, so that dim colours ("bright black"
// comments, blue directories) stay legible.
#pragma once

#include <array>
#include <cstdint>

#include "TerminalAutomation/Tmux/Picture/CellStyle.h"

namespace velmora {

struct Rgb {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  bool operator==(const Rgb&) const = default;
};

struct PaneTheme {
  static constexpr Rgb background{0x14, 0x17, 0x1C};
  static constexpr Rgb foreground{0xDC, 0xDF, 0xE4};
  static constexpr Rgb cursor{0xF2, 0xC1, 0x4E};

  static constexpr std::array<Rgb, 16> named{{
      {0x2E, 0x34, 0x40},  // black
      {0xF0, 0x71, 0x78},  // red
      {0x8F, 0xC9, 0x6B},  // green
      {0xE5, 0xB5, 0x5B},  // yellow
      {0x6C, 0xA8, 0xF5},  // blue
      {0xD0, 0x8B, 0xE8},  // magenta
      {0x56, 0xC2, 0xCF},  // cyan
      {0xC5, 0xCA, 0xD3},  // white
      {0x8B, 0x94, 0xA3},  // bright black
      {0xFF, 0x8F, 0x94},  // bright red
      {0xAC, 0xE0, 0x8A},  // bright green
      {0xFF, 0xD4, 0x80},  // bright yellow
      {0x93, 0xC1, 0xFF},  // bright blue
      {0xE5, 0xAE, 0xF7},  // bright magenta
      {0x84, 0xDF, 0xE8},  // bright cyan
      {0xFF, 0xFF, 0xFF},  // bright white
  }};

  /// One of the 256: the named colours, the 6×6×6 cube, the 24 greys.
  static constexpr Rgb palette(std::uint8_t index) {
    if (index < 16) return named[index];
    if (index >= 232) {
      const auto grey = static_cast<std::uint8_t>(8 + 10 * (index - 232));
      return {grey, grey, grey};
    }
    constexpr std::array<std::uint8_t, 6> levels{0, 95, 135, 175, 215, 255};
    const auto cube = static_cast<std::size_t>(index - 16);
    return {levels[cube / 36], levels[cube / 6 % 6], levels[cube % 6]};
  }

  static constexpr Rgb resolve(const CellColour& colour, Rgb ifDefault) {
    switch (colour.kind) {
      case CellColour::Kind::palette:
        return palette(colour.red);
      case CellColour::Kind::rgb:
        return {colour.red, colour.green, colour.blue};
      case CellColour::Kind::default_:
        break;
    }
    return ifDefault;
  }
};

}  // namespace velmora
