#include "TerminalAutomation/Tmux/Picture/PngWriter.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

namespace velmora {
namespace {

constexpr std::size_t maximumPalette = 256;
constexpr std::uint32_t colourMask = 0xFFFFFF;

/// The colours of a picture and how often each occurs. Text has long runs of one colour: the last one is
/// remembered.
std::unordered_map<std::uint32_t, std::uint32_t> countColours(const PixelImage& image) {
  std::unordered_map<std::uint32_t, std::uint32_t> counts;
  std::uint32_t* last = nullptr;
  std::uint32_t lastColour = 0;
  for (const std::uint32_t pixel : image.pixels) {
    const std::uint32_t colour = pixel & colourMask;
    if (last == nullptr || colour != lastColour) {
      last = &counts[colour];
      lastColour = colour;
    }
    ++*last;
  }
  return counts;
}

struct Palette {
  std::vector<std::uint32_t> colours;
  std::unordered_map<std::uint32_t, std::uint8_t> indexOf;  // of every colour of the picture
};

/// Puts colours that agree in the upper `bits` of each channel together; the most frequent of them stands for
/// all, so that flat areas stay exact. False when there are more groups than a palette holds.
bool makePalette(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& byFrequency, int bits,
                 Palette& palette) {
  const auto channel = static_cast<std::uint32_t>(0xFF << (8 - bits) & 0xFF);
  const std::uint32_t mask = channel << 16 | channel << 8 | channel;
  std::unordered_map<std::uint32_t, std::uint8_t> groups;
  palette = {};
  for (const auto& [colour, count] : byFrequency) {
    const auto found = groups.find(colour & mask);
    if (found != groups.end()) {
      palette.indexOf.emplace(colour, found->second);
      continue;
    }
    if (palette.colours.size() == maximumPalette) return false;
    const auto index = static_cast<std::uint8_t>(palette.colours.size());
    groups.emplace(colour & mask, index);
    palette.indexOf.emplace(colour, index);
    palette.colours.push_back(colour);
  }
  return true;
}

bool choosePalette(const PixelImage& image, Palette& palette) {
  const auto counts = countColours(image);
  std::vector<std::pair<std::uint32_t, std::uint32_t>> byFrequency(counts.begin(), counts.end());
  std::sort(byFrequency.begin(), byFrequency.end(), [](const auto& a, const auto& b) {
    return a.second != b.second ? a.second > b.second : a.first < b.first;
  });
  constexpr std::array<int, 2> precisions{5, 4};
  return std::any_of(precisions.begin(), precisions.end(),
                     [&](int bits) { return makePalette(byFrequency, bits, palette); });
}

/// A number for each pixel: its colour in the palette.
std::vector<png_byte> indexedPixels(const PixelImage& image, const Palette& palette) {
  std::vector<png_byte> indexes;
  indexes.reserve(image.pixels.size());
  std::uint32_t lastColour = ~0U;
  png_byte index = 0;
  for (const std::uint32_t pixel : image.pixels) {
    const std::uint32_t colour = pixel & colourMask;
    if (colour != lastColour) {
      index = palette.indexOf.at(colour);
      lastColour = colour;
    }
    indexes.push_back(index);
  }
  return indexes;
}

/// Red, green and blue of each colour.
std::vector<png_byte> channelsOf(const std::vector<std::uint32_t>& colours) {
  std::vector<png_byte> bytes;
  bytes.reserve(3 * colours.size());
  for (const std::uint32_t colour : colours) {
    for (const int shift : {16, 8, 0}) bytes.push_back(static_cast<png_byte>(colour >> shift & 0xFF));
  }
  return bytes;
}

/// `colourMap` belongs to images whose pixels are numbers in it.
std::string written(png_image& image, const std::vector<png_byte>& pixels, const png_byte* colourMap) {
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::string png(size, '\0');
  constexpr png_int_32 packedRows = 0;
  if (png_image_write_to_memory(&image, png.data(), &size, /*convert_to_8bit=*/0, pixels.data(), packedRows,
                                colourMap) == 0) {
    throw std::runtime_error(std::string("the picture could not be compressed: ") + image.message);
  }
  png.resize(size);
  return png;
}

}  // namespace

std::string encodePng(const PixelImage& image) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  Palette palette;
  if (!choosePalette(image, palette)) {
    png.format = PNG_FORMAT_RGB;
    return written(png, channelsOf(image.pixels), nullptr);
  }
  png.format = PNG_FORMAT_RGB_COLORMAP;
  png.colormap_entries = static_cast<png_uint_32>(palette.colours.size());
  return written(png, indexedPixels(image, palette), channelsOf(palette.colours).data());
}

}  // namespace velmora
