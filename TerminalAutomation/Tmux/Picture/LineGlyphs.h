// Characters that must meet their neighbours without a gap, whatever the font: box drawing (U+2500…257F),
// block elements (U+2580…259F), Braille patterns (U+2800…28FF) and the horizontal scan lines. They are drawn
// as shapes, on whole pixels where they can be.
#pragma once

#include <cairo.h>

namespace velmora {

/// A rectangle of whole pixels.
struct PixelBox {
  int x;
  int y;
  int width;
  int height;
};

/// Whether drawLineGlyph draws this character.
bool isLineGlyph(char32_t character);

/// Draws `character` into `box` in the context's source colour. `stroke` is the width of a light line in
/// pixels.
void drawLineGlyph(cairo_t* cairo, char32_t character, const PixelBox& box, int stroke);

}  // namespace velmora
