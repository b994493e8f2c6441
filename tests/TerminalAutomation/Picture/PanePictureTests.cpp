#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "TerminalAutomation/Tmux/Picture/PanePicture.h"
#include "tests/support/Golden.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using Picture = std::shared_ptr<cairo_surface_t>;

Picture decoded(const std::string& png) {
  std::string_view rest = png;
  const auto read = [](void* closure, unsigned char* into, unsigned length) {
    auto& left = *static_cast<std::string_view*>(closure);
    if (left.size() < length) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(into, left.data(), length);
    left.remove_prefix(length);
    return CAIRO_STATUS_SUCCESS;
  };
  Picture picture(cairo_image_surface_create_from_png_stream(read, &rest), cairo_surface_destroy);
  EXPECT_EQ(cairo_surface_status(picture.get()), CAIRO_STATUS_SUCCESS);
  return picture;
}

int widthOf(const Picture& picture) { return cairo_image_surface_get_width(picture.get()); }
int heightOf(const Picture& picture) { return cairo_image_surface_get_height(picture.get()); }

unsigned pixelAt(const Picture& picture, int x, int y) {
  const auto* row =
      cairo_image_surface_get_data(picture.get()) + y * cairo_image_surface_get_stride(picture.get());
  unsigned pixel = 0;
  std::memcpy(&pixel, row + 4 * x, sizeof pixel);
  return pixel & 0xFFFFFFu;
}

int channelDifference(unsigned a, unsigned b) {
  int largest = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    largest = std::max(largest,
                       std::abs(static_cast<int>(a >> shift & 0xFFu) - static_cast<int>(b >> shift & 0xFFu)));
  }
  return largest;
}

// The share of pixels that differ visibly.
double difference(const Picture& a, const Picture& b) {
  int differing = 0;
  for (int y = 0; y < heightOf(a); ++y) {
    for (int x = 0; x < widthOf(a); ++x)
      differing += channelDifference(pixelAt(a, x, y), pixelAt(b, x, y)) > 64;
  }
  return static_cast<double>(differing) / (widthOf(a) * heightOf(a));
}

// A screen with one of everything that needs no font beyond DejaVu's.
PaneScreen sampleScreen() {
  return {
      .text =
          "$ ls --color\n"
          "\033[34mdir\033[0m \033[1;32mrun.sh\033[0m \033[31merror\033[0m plain\n"
          "\033[7mreverse\033[27m \033[3mitalic\033[23m \033[9mstrike\033[29m \033[2mdim\033[22m\n"
          "\033[4mline\033[24m \033[4:2mdouble\033[24m \033[4:3;58:5:1mcurly\033[0m \033[53mover\033[55m\n"
          "┌──────┬──────┐ ╭──╮ ████▓▒░\n"
          "│ left │ right│ ╰──╯ ▁▂▃▄▅▆▇\n"
          "╘══════╧══════╛ \016lqk\017  ⣿⡇⢸\n"
          "\033[48;5;24;38;5;230m 256 \033[48;2;90;20;60m rgb \033[0m\n",
      .columns = 34,
      .rows = 9,
      .cursorColumn = 2,
      .cursorRow = 8,
      .cursorVisible = true};
}

TEST(PanePicture, LooksAsItDid) {
  const auto png = renderPanePicture(sampleScreen());
  const auto golden = testing::dataFile("picture/sample.png");
  if (std::getenv("VELMORA_UPDATE_GOLDEN") != nullptr) std::ofstream(golden, std::ios::binary) << png;
  const auto picture = decoded(png);
  const auto expected = decoded(testing::readDataFile("picture/sample.png"));
  ASSERT_EQ(widthOf(picture), widthOf(expected));
  ASSERT_EQ(heightOf(picture), heightOf(expected));
  EXPECT_LT(difference(picture, expected), 0.02);
}

TEST(PanePicture, ADifferentScreenLooksDifferent) {
  auto other = sampleScreen();
  std::replace(other.text.begin(), other.text.end(), 'e', 'W');
  const auto expected = decoded(testing::readDataFile("picture/sample.png"));
  EXPECT_GT(difference(decoded(renderPanePicture(other)), expected), 0.005);
  other.text = sampleScreen().text.substr(0, 20);
  EXPECT_GT(difference(decoded(renderPanePicture(other)), expected), 0.05);
}

TEST(PanePicture, ATextOf120By40IsLargeEnoughToReadAndSmallEnoughToSend) {
  std::string text;
  for (int row = 0; row < 40; ++row) {
    std::string line;
    for (int word = 0; line.size() < 120; ++word)
      line += "word" + std::to_string((row * 7919 + word * 104729) % 9973) + " ";
    text += "\033[3" + std::to_string(row % 8) + "m" + line.substr(0, 120) + "\n";
  }
  const auto png = renderPanePicture({.text = text, .columns = 120, .rows = 40});
  EXPECT_LT(png.size(), 150'000u);
  const auto picture = decoded(png);
  EXPECT_EQ(widthOf(picture), 1216);
  EXPECT_EQ(heightOf(picture), 816);
}

TEST(PanePicture, ShowsTheCursorOnlyWhenItIsVisible) {
  PaneScreen screen{.text = "", .columns = 4, .rows = 2, .cursorColumn = 1, .cursorRow = 1};
  const auto hidden = decoded(renderPanePicture(screen));
  screen.cursorVisible = true;
  EXPECT_GT(difference(decoded(renderPanePicture(screen)), hidden), 0.05);
  screen.cursorColumn = 99;  // beyond the last column it stands on it
  EXPECT_GT(difference(decoded(renderPanePicture(screen)), hidden), 0.05);
  screen.cursorRow = 99;  // beyond the last row there is none
  EXPECT_EQ(difference(decoded(renderPanePicture(screen)), hidden), 0);
}

TEST(PanePicture, BoxDrawingJoinsWithoutGaps) {
  const auto picture = decoded(renderPanePicture({.text = "│\n│\n│\n", .columns = 1, .rows = 3}));
  // The cells start 8 pixels from the edge; every row of pixels between the first and the last has the line.
  const unsigned background = pixelAt(picture, 0, 0);
  for (int y = 8; y < heightOf(picture) - 8; ++y) {
    bool drawn = false;
    for (int x = 0; x < widthOf(picture); ++x) drawn |= pixelAt(picture, x, y) != background;
    EXPECT_TRUE(drawn) << "gap at " << y;
  }
}

TEST(PanePicture, AnyInputGivesAPicture) {
  for (const auto& screen :
       {PaneScreen{}, PaneScreen{.text = "x", .columns = -1, .rows = 0},
        PaneScreen{.text = "\xFF\033[", .columns = 5, .rows = 1},
        PaneScreen{.text = std::string(5000, 'x'), .columns = 1000, .rows = 500},
        PaneScreen{.text = "한글 漢字 👩‍👩‍👧 🇰🇷 e\u0301 \uE000 \U0010FFFF",
        .columns = 40,
        .rows = 1,
        .cursorColumn = -3,
        .cursorRow = -2,
        .cursorVisible = true}}) {
    const auto picture = decoded(renderPanePicture(screen));
    EXPECT_GT(widthOf(picture), 0);
    EXPECT_LE(static_cast<long>(widthOf(picture)) * heightOf(picture), 17'000'000);
  }
}

TEST(PanePicture, ThreadsMayDrawAtOnce) {
  const auto expected = renderPanePicture(sampleScreen());
  std::vector<std::thread> threads;
  std::vector<std::string> pictures(4);
  for (auto& picture : pictures)
    threads.emplace_back([&picture] { picture = renderPanePicture(sampleScreen()); });
  for (auto& thread : threads) thread.join();
  for (const auto& picture : pictures) EXPECT_EQ(picture, expected);
}

// Runs in a process of its own, since fonts are looked up once.
TEST(PanePictureDeathTest, WithoutAnyFontThereIsStillAPictureOfTheSameSize) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const TemporaryDirectory directory;
        std::ofstream(directory / "fonts.conf") << "<?xml version=\"1.0\"?><fontconfig></fontconfig>";
        setenv("FONTCONFIG_FILE", (directory / "fonts.conf").c_str(), 1);
        const auto picture = decoded(renderPanePicture(sampleScreen()));
        const bool drawn = widthOf(picture) == 34 * 10 + 16 && heightOf(picture) == 9 * 20 + 16;
        std::_Exit(drawn ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace velmora
