// Writes pixels as a PNG, small: a palette of up to 256 colours (1 to 8 bits a pixel) when that is enough,
// else red-green-blue. Pure; any thread.
//
// Why not Cairo's own writer: a pane of 120 x 40 makes 179 KB there and takes 61 ms, more than drawing it;
// with a palette it makes 38 KB, which a client can also be handed inline.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

/// Rows of pixels from the top, each 0x00RRGGBB (the upper byte is ignored).
struct PixelImage {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;
};

/// The bytes of a PNG. Smoothed edges of text may be rounded to fit the palette, by at most 16 of 255 a
/// channel; flat areas keep their colour. Throws std::runtime_error when compression fails.
std::string encodePng(const PixelImage& image);

}  // namespace velmora
