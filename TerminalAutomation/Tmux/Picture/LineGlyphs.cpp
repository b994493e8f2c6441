#include "TerminalAutomation/Tmux/Picture/LineGlyphs.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace velmora {
namespace {

enum : std::uint8_t { none, light, heavy, double_ };

/// The four arms of a box-drawing character, each one of the weights above.
struct Arms {
  std::uint8_t left, up, right, down;
};

/// U+2500…257F, one character a row of four digits: left, up, right, down. Rows of zeros (dashes, arcs,
/// diagonals) are drawn by functions of their own.
constexpr std::array<std::uint16_t, 128> armDigits{
    1010, 2020, 101,  202,  0,    0,    0,    0,    0,    0,    0,    0,    11,   21,   12,   22,    // 2500
    1001, 2001, 1002, 2002, 110,  120,  210,  220,  1100, 2100, 1200, 2200, 111,  121,  211,  112,   // 2510
    212,  221,  122,  222,  1101, 2101, 1201, 1102, 1202, 2201, 2102, 2202, 1011, 2011, 1021, 2021,  // 2520
    1012, 2012, 1022, 2022, 1110, 2110, 1120, 2120, 1210, 2210, 1220, 2220, 1111, 2111, 1121, 2121,  // 2530
    1211, 1112, 1212, 2211, 1221, 2112, 1122, 2221, 2122, 2212, 1222, 2222, 0,    0,    0,    0,     // 2540
    3030, 303,  31,   13,   33,   3001, 1003, 3003, 130,  310,  330,  3100, 1300, 3300, 131,  313,   // 2550
    333,  3101, 1303, 3303, 3031, 1013, 3033, 3130, 1310, 3330, 3131, 1313, 3333, 0,    0,    0,     // 2560
    0,    0,    0,    0,    1000, 100,  10,   1,    2000, 200,  20,   2,    1020, 102,  2010, 201};  // 2570

constexpr Arms armsOf(char32_t c) {
  const std::uint16_t digits = armDigits[c - 0x2500];
  const auto digit = [digits](int unit) { return static_cast<std::uint8_t>(digits / unit % 10); };
  return {digit(1000), digit(100), digit(10), digit(1)};
}

class BoxPen {
 public:
  BoxPen(cairo_t* cairo, const PixelBox& box, int stroke) : cairo_(cairo), box_(box), stroke_(stroke) {}

  void arms(const Arms& arms) {
    horizontalArm(arms.left, arms.right, arms.up, arms.down, true);
    horizontalArm(arms.right, arms.left, arms.up, arms.down, false);
    verticalArm(arms.up, arms.down, arms.left, arms.right, true);
    verticalArm(arms.down, arms.up, arms.left, arms.right, false);
  }

  void dashes(int count, bool horizontal, int width) {
    const int length = horizontal ? box_.width : box_.height;
    for (int i = 0; i < count; ++i) {
      const int from = length * i / count;
      const int gap = std::max(1, length / count / 3);
      const int size = std::max(1, length * (i + 1) / count - from - gap);
      if (horizontal) {
        rectangle(from, middleY(width), size, width);
      } else {
        rectangle(middleX(width), from, width, size);
      }
    }
  }

  /// ╭ ╮ ╯ ╰: a quarter of a circle between the middles of two sides.
  void arc(bool toRight, bool toDown) {
    const double middle = stroke_ / 2.0;
    const double x = box_.x + middleX(stroke_) + middle;
    const double y = box_.y + middleY(stroke_) + middle;
    const double edgeX = toRight ? box_.x + box_.width : box_.x;
    const double edgeY = toDown ? box_.y + box_.height : box_.y;
    const double radius = std::min(std::abs(edgeX - x), std::abs(edgeY - y));
    const double signX = toRight ? 1 : -1;
    const double signY = toDown ? 1 : -1;
    cairo_set_line_width(cairo_, stroke_);
    cairo_move_to(cairo_, x, edgeY);
    cairo_line_to(cairo_, x, y + signY * radius);
    const double bend = 0.5523 * radius;  // a cubic curve's nearest to a quarter of a circle
    cairo_curve_to(cairo_, x, y + signY * (radius - bend), x + signX * (radius - bend), y, x + signX * radius,
                   y);
    cairo_line_to(cairo_, edgeX, y);
    cairo_stroke(cairo_);
  }

  void diagonal(bool rising) {
    cairo_set_line_width(cairo_, stroke_);
    cairo_move_to(cairo_, box_.x, rising ? box_.y + box_.height : box_.y);
    cairo_line_to(cairo_, box_.x + box_.width, rising ? box_.y : box_.y + box_.height);
    cairo_stroke(cairo_);
  }

  /// A part of the cell in eighths of its width and height.
  void eighths(int left, int top, int right, int bottom) {
    const auto scale = [](int length, int eighth) { return (length * eighth + 4) / 8; };
    const int x = scale(box_.width, left);
    const int y = scale(box_.height, top);
    rectangle(x, y, std::max(1, scale(box_.width, right) - x), std::max(1, scale(box_.height, bottom) - y));
  }

  void horizontalLine(int y) { rectangle(0, std::clamp(y, 0, box_.height - stroke_), box_.width, stroke_); }

  void braille(unsigned dots) {
    static constexpr std::array<std::array<int, 2>, 8> places{
        {{0, 0}, {0, 1}, {0, 2}, {1, 0}, {1, 1}, {1, 2}, {0, 3}, {1, 3}}};
    const int size = std::max(1, box_.width / 4);
    for (std::size_t i = 0; i < places.size(); ++i) {
      if ((dots >> i & 1U) == 0) continue;
      const int x = box_.width * (2 * places[i][0] + 1) / 4 - size / 2;
      const int y = box_.height * (2 * places[i][1] + 1) / 8 - size / 2;
      rectangle(x, y, size, size);
    }
  }

 private:
  int widthOf(int weight) const { return weight == heavy ? 2 * stroke_ + 1 : stroke_; }
  int middleX(int width) const { return (box_.width - width) / 2; }
  int middleY(int width) const { return (box_.height - width) / 2; }
  int gap() const { return std::max(stroke_ + 1, box_.width / 5); }  // between the middle and a double's line

  void rectangle(int x, int y, int width, int height) {
    cairo_rectangle(cairo_, box_.x + x, box_.y + y, width, height);
    cairo_fill(cairo_);
  }

  /// How far an arm reaches past the middle, towards the opposite side (less than 0: it stops short).
  /// `side` is -1 or 1 for one line of a double arm, seen along the perpendicular, 0 for a single arm;
  /// `near` and `far` are the perpendicular arms on the sides -1 and 1.
  int reach(int side, int opposite, int near, int far) const {
    const bool doubleNear = near == double_;
    const bool doubleFar = far == double_;
    if (side == 0) {
      if (opposite != none || (!doubleNear && !doubleFar)) {
        return (std::max(widthOf(near), widthOf(far)) + 1) / 2;
      }
      return doubleNear && doubleFar ? -gap() : gap() + stroke_;
    }
    if (side < 0 ? doubleNear : doubleFar) return -gap() + stroke_;  // turns into the near line of that arm
    if (opposite != none) return 0;
    return doubleNear || doubleFar ? gap() + stroke_ : (stroke_ + 1) / 2;
  }

  void horizontalArm(int weight, int opposite, int up, int down, bool left) {
    const auto line = [&](int y, int width, int past) {
      const int middle = middleX(stroke_);
      const int end = left ? middle + past : middle + stroke_ - past;
      if (left) {
        rectangle(0, y, std::clamp(end, 0, box_.width), width);
      } else {
        const int from = std::clamp(end, 0, box_.width);
        rectangle(from, y, box_.width - from, width);
      }
    };
    if (weight == none) return;
    if (weight != double_) {
      const int width = widthOf(weight);
      return line(middleY(width), width, reach(0, opposite, up, down) + stroke_ / 2);
    }
    line(middleY(stroke_) - gap(), stroke_, reach(-1, opposite, up, down));
    line(middleY(stroke_) + gap(), stroke_, reach(1, opposite, up, down));
  }

  void verticalArm(int weight, int opposite, int left, int right, bool up) {
    const auto line = [&](int x, int width, int past) {
      const int middle = middleY(stroke_);
      const int end = up ? middle + past : middle + stroke_ - past;
      if (up) {
        rectangle(x, 0, width, std::clamp(end, 0, box_.height));
      } else {
        const int from = std::clamp(end, 0, box_.height);
        rectangle(x, from, width, box_.height - from);
      }
    };
    if (weight == none) return;
    if (weight != double_) {
      const int width = widthOf(weight);
      return line(middleX(width), width, reach(0, opposite, left, right) + stroke_ / 2);
    }
    line(middleX(stroke_) - gap(), stroke_, reach(-1, opposite, left, right));
    line(middleX(stroke_) + gap(), stroke_, reach(1, opposite, left, right));
  }

  cairo_t* cairo_;
  PixelBox box_;
  int stroke_;
};

void drawBoxDrawing(BoxPen& pen, char32_t c, int stroke) {
  const int strong = 2 * stroke + 1;
  if (c >= 0x2504 && c <= 0x250B) {
    pen.dashes(c < 0x2508 ? 3 : 4, (c & 2) == 0, (c & 1) == 0 ? stroke : strong);
  } else if (c >= 0x254C && c <= 0x254F) {
    pen.dashes(2, c < 0x254E, (c & 1) == 0 ? stroke : strong);
  } else if (c >= 0x256D && c <= 0x2570) {
    pen.arc(c == 0x256D || c == 0x2570, c <= 0x256E);
  } else if (c >= 0x2571 && c <= 0x2573) {
    if (c != 0x2572) pen.diagonal(true);
    if (c != 0x2571) pen.diagonal(false);
  } else {
    pen.arms(armsOf(c));
  }
}

void drawShade(cairo_t* cairo, const PixelBox& box, double strength) {
  cairo_save(cairo);
  cairo_rectangle(cairo, box.x, box.y, box.width, box.height);
  cairo_clip(cairo);
  cairo_paint_with_alpha(cairo, strength);
  cairo_restore(cairo);
}

void drawBlock(cairo_t* cairo, BoxPen& pen, char32_t c, const PixelBox& box) {
  const int n = static_cast<int>(c - 0x2580);
  if (n == 0) return pen.eighths(0, 0, 8, 4);
  if (n <= 8) return pen.eighths(0, 8 - n, 8, 8);
  if (n <= 15) return pen.eighths(0, 0, 16 - n, 8);
  if (n == 16) return pen.eighths(4, 0, 8, 8);
  if (n <= 19) return drawShade(cairo, box, (n - 16) * 0.25);
  if (n == 20) return pen.eighths(0, 0, 8, 1);
  if (n == 21) return pen.eighths(7, 0, 8, 8);
  // Quadrants; bits: 1 upper left, 2 upper right, 4 lower left, 8 lower right.
  static constexpr std::array<unsigned, 10> quadrants{4, 8, 1, 13, 9, 7, 11, 2, 6, 14};
  const unsigned bits = quadrants[static_cast<std::size_t>(n - 22)];
  if ((bits & 1U) != 0) pen.eighths(0, 0, 4, 4);
  if ((bits & 2U) != 0) pen.eighths(4, 0, 8, 4);
  if ((bits & 4U) != 0) pen.eighths(0, 4, 4, 8);
  if ((bits & 8U) != 0) pen.eighths(4, 4, 8, 8);
}

constexpr bool isScanLine(char32_t c) { return c >= 0x23BA && c <= 0x23BD; }

}  // namespace

bool isLineGlyph(char32_t character) {
  return (character >= 0x2500 && character <= 0x259F) || (character >= 0x2800 && character <= 0x28FF) ||
         isScanLine(character);
}

void drawLineGlyph(cairo_t* cairo, char32_t character, const PixelBox& box, int stroke) {
  BoxPen pen(cairo, box, stroke);
  if (isScanLine(character)) {
    static constexpr std::array<int, 4> eighths{0, 2, 6, 8};
    pen.horizontalLine(box.height * eighths[character - 0x23BA] / 8);
  } else if (character >= 0x2800) {
    pen.braille(static_cast<unsigned>(character - 0x2800));
  } else if (character >= 0x2580) {
    drawBlock(cairo, pen, character, box);
  } else {
    drawBoxDrawing(pen, character, stroke);
  }
}

}  // namespace velmora
