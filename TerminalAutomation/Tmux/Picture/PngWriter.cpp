#include "TerminalAutomation/Tmux/Picture/PngWriter.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

namespace velmora {
namespace {

constexpr int compressionLevel = 6;
constexpr std::size_t maximumPalette = 256;
constexpr std::uint32_t colourMask = 0xFFFFFF;

void appendNumber(std::string& out, std::uint32_t value) {
  for (const int shift : {24, 16, 8, 0}) out.push_back(static_cast<char>(value >> shift & 0xFF));
}

void appendChunk(std::string& png, std::string_view type, std::string_view data) {
  appendNumber(png, static_cast<std::uint32_t>(data.size()));
  const std::size_t start = png.size();
  png += type;
  png += data;
  const auto* bytes = reinterpret_cast<const Bytef*>(png.data() + start);
  appendNumber(png, static_cast<std::uint32_t>(crc32(0, bytes, static_cast<uInt>(png.size() - start))));
}

std::string compressed(const std::string& data) {
  uLongf size = compressBound(static_cast<uLong>(data.size()));
  std::string out(size, '\0');
  const int result =
      compress2(reinterpret_cast<Bytef*>(out.data()), &size, reinterpret_cast<const Bytef*>(data.data()),
                static_cast<uLong>(data.size()), compressionLevel);
  if (result != Z_OK) throw std::runtime_error("the picture could not be compressed");
  out.resize(size);
  return out;
}

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

int depthFor(std::size_t colours) { return colours <= 2 ? 1 : colours <= 4 ? 2 : colours <= 16 ? 4 : 8; }

std::string indexedRows(const PixelImage& image, const Palette& palette, int depth) {
  const auto width = static_cast<std::size_t>(image.width);
  std::string rows;
  rows.reserve((width + 1) * static_cast<std::size_t>(image.height));
  std::uint32_t lastColour = ~0U;
  unsigned index = 0;
  for (std::size_t row = 0; row < image.pixels.size(); row += width) {
    rows.push_back(0);  // no filter: best for few colours
    unsigned packed = 0;
    int used = 0;
    for (std::size_t x = 0; x < width; ++x) {
      const std::uint32_t colour = image.pixels[row + x] & colourMask;
      if (colour != lastColour) {
        index = palette.indexOf.at(colour);
        lastColour = colour;
      }
      packed = packed << depth | index;
      used += depth;
      if (used == 8) {
        rows.push_back(static_cast<char>(packed & 0xFF));
        packed = 0;
        used = 0;
      }
    }
    if (used > 0) rows.push_back(static_cast<char>(packed << (8 - used) & 0xFF));
  }
  return rows;
}

std::string rgbRows(const PixelImage& image) {
  const auto width = static_cast<std::size_t>(image.width);
  std::string rows;
  rows.reserve((3 * width + 1) * static_cast<std::size_t>(image.height));
  for (std::size_t row = 0; row < image.pixels.size(); row += width) {
    rows.push_back(0);
    for (std::size_t x = 0; x < width; ++x) {
      for (const int shift : {16, 8, 0}) {
        rows.push_back(static_cast<char>(image.pixels[row + x] >> shift & 0xFF));
      }
    }
  }
  return rows;
}

std::string header(const PixelImage& image, int depth, bool indexed) {
  std::string data;
  appendNumber(data, static_cast<std::uint32_t>(image.width));
  appendNumber(data, static_cast<std::uint32_t>(image.height));
  data.push_back(static_cast<char>(depth));
  data.push_back(indexed ? 3 : 2);
  data.append(3, '\0');  // deflate, filters by row, not interlaced
  return data;
}

}  // namespace

std::string encodePng(const PixelImage& image) {
  Palette palette;
  const bool indexed = choosePalette(image, palette);
  const int depth = indexed ? depthFor(palette.colours.size()) : 8;

  std::string png("\x89PNG\r\n\x1A\n", 8);
  appendChunk(png, "IHDR", header(image, depth, indexed));
  if (indexed) {
    std::string colours;
    for (const std::uint32_t colour : palette.colours) {
      for (const int shift : {16, 8, 0}) colours.push_back(static_cast<char>(colour >> shift & 0xFF));
    }
    appendChunk(png, "PLTE", colours);
  }
  appendChunk(png, "IDAT", compressed(indexed ? indexedRows(image, palette, depth) : rgbRows(image)));
  appendChunk(png, "IEND", {});
  return png;
}

}  // namespace velmora
