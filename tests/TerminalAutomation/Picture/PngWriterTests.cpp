#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cstdlib>

#include "TerminalAutomation/Tmux/Picture/PngWriter.h"

namespace velmora {
namespace {

PixelImage imageOf(int width, int height, std::uint32_t (*colour)(int x, int y)) {
  PixelImage image{width, height, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) image.pixels.push_back(colour(x, y));
  }
  return image;
}

std::vector<std::uint32_t> pixelsOf(const std::string& png) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  EXPECT_NE(png_image_begin_read_from_memory(&image, png.data(), png.size()), 0) << image.message;
  image.format = PNG_FORMAT_RGB;
  std::vector<png_byte> bytes(PNG_IMAGE_SIZE(image));
  EXPECT_NE(png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr), 0) << image.message;
  std::vector<std::uint32_t> pixels;
  for (std::size_t i = 0; i + 2 < bytes.size(); i += 3) {
    pixels.push_back(std::uint32_t{bytes[i]} << 16 | std::uint32_t{bytes[i + 1]} << 8 | bytes[i + 2]);
  }
  return pixels;
}

/// Of the header chunk: bits a sample, and whether there is a palette.
int depthOf(const std::string& png) { return png.at(24); }
bool isIndexed(const std::string& png) { return png.at(25) == 3; }

TEST(PngWriter, FewColoursTakeFewBitsAndStayExact) {
  const auto two = imageOf(9, 3, [](int x, int y) { return (x + y) % 2 == 0 ? 0x123456u : 0xFFFFFFu; });
  EXPECT_EQ(depthOf(encodePng(two)), 1);
  EXPECT_EQ(pixelsOf(encodePng(two)), two.pixels);
  const auto sixteen = imageOf(16, 5, [](int x, int) { return 0x101010u * static_cast<unsigned>(x); });
  EXPECT_EQ(depthOf(encodePng(sixteen)), 4);
  EXPECT_EQ(pixelsOf(encodePng(sixteen)), sixteen.pixels);
  EXPECT_TRUE(isIndexed(encodePng(sixteen)));
}

TEST(PngWriter, TheUpperByteOfAPixelIsIgnored) {
  const auto image = imageOf(2, 2, [](int x, int) { return x == 0 ? 0xFF00FF00u : 0x0000FF00u; });
  EXPECT_EQ(pixelsOf(encodePng(image)), std::vector<std::uint32_t>(4, 0x00FF00u));
}

TEST(PngWriter, ShadesAreRoundedALittleAndTheMostFrequentColourIsNot) {
  const auto image = imageOf(600, 2, [](int x, int y) {
    return y == 0 ? 0x0D1117u : static_cast<unsigned>(x % 256) << 16 | static_cast<unsigned>(x / 4);
  });
  const auto png = encodePng(image);
  EXPECT_TRUE(isIndexed(png));
  const auto pixels = pixelsOf(png);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    if (i < 600) {
      EXPECT_EQ(pixels[i], 0x0D1117u);
    }
    for (const int shift : {16, 8, 0}) {
      EXPECT_LE(std::abs(static_cast<int>(pixels[i] >> shift & 0xFF) -
                         static_cast<int>(image.pixels[i] >> shift & 0xFF)),
                16);
    }
  }
}

TEST(PngWriter, APhotographIsWrittenWithoutAPalette) {
  const auto image = imageOf(64, 64, [](int x, int y) {
    return static_cast<unsigned>(x * 4) << 16 | static_cast<unsigned>(y * 4) << 8 |
           static_cast<unsigned>((x * 37 + y * 91) % 256);
  });
  const auto png = encodePng(image);
  EXPECT_FALSE(isIndexed(png));
  EXPECT_EQ(pixelsOf(png), image.pixels);
}

}  // namespace
}  // namespace velmora
