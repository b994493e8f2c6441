#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "VelmoraHelper/Tools/CapturedPicture.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

const std::string png = std::string("\x89PNG\r\n\x1A\n") + std::string("\0\0\0", 3) + "rest";

std::string fileWith(const TemporaryDirectory& directory, const std::string& content) {
  const auto path = directory / "picture.png";
  std::ofstream(path, std::ios::binary) << content;
  return path.string();
}

TEST(CapturedPicture, IsReadWholeUpToTheLimit) {
  const TemporaryDirectory directory;
  const auto path = fileWith(directory, png);
  EXPECT_EQ(readPicture(path, png.size()), (CapturedPicture{.bytes = png.size(), .base64 = base64(png)}));
  EXPECT_EQ(readPicture(path, png.size() - 1), (CapturedPicture{.bytes = png.size()}));
  EXPECT_EQ(readPicture(path, 0), (CapturedPicture{.bytes = png.size()}));
}

TEST(CapturedPicture, IsNothingThatIsNoPngFile) {
  const TemporaryDirectory directory;
  EXPECT_EQ(readPicture((directory / "absent.png").string(), 1000), std::nullopt);
  EXPECT_EQ(readPicture(directory.path().string(), 1000), std::nullopt);
  EXPECT_EQ(readPicture(fileWith(directory, ""), 1000), std::nullopt);
  EXPECT_EQ(readPicture(fileWith(directory, "\x89PNG\r\n"), 1000), std::nullopt);
  EXPECT_EQ(readPicture(fileWith(directory, "GIF89a, not a picture of ours"), 1000), std::nullopt);
}

TEST(CapturedPicture, IsNeverReadThroughALinkOrFromAPipe) {
  const TemporaryDirectory directory;
  std::filesystem::create_symlink(fileWith(directory, png), directory / "link.png");
  EXPECT_EQ(readPicture((directory / "link.png").string(), 1000), std::nullopt);
  ASSERT_EQ(::mkfifo((directory / "pipe.png").c_str(), 0600), 0);
  EXPECT_EQ(readPicture((directory / "pipe.png").string(), 1000), std::nullopt);
}

// The examples of RFC 4648, section 10.
TEST(CapturedPicture, Base64FollowsTheStandard) {
  EXPECT_EQ(base64(""), "");
  EXPECT_EQ(base64("f"), "Zg==");
  EXPECT_EQ(base64("fo"), "Zm8=");
  EXPECT_EQ(base64("foo"), "Zm9v");
  EXPECT_EQ(base64("foob"), "Zm9vYg==");
  EXPECT_EQ(base64("fooba"), "Zm9vYmE=");
  EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
  EXPECT_EQ(base64("\xFF\xFE\xFD\xFB\xF0"), "//79+/A=");
}

TEST(CapturedPicture, FileUrisEscapeWhatAUriCannotHold) {
  EXPECT_EQ(fileUri("/tmp/Velmora/terminal-1.png"), "file:///tmp/Velmora/terminal-1.png");
  EXPECT_EQ(fileUri("/a b/50%/#?/\xED\x95\x9C"), "file:///a%20b/50%25/%23%3F/%ED%95%9C");
}

}  // namespace
}  // namespace velmora
