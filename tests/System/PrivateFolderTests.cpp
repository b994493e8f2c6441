#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "System/PrivateFolder.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::modeOf;

TEST(PrivateFolder, CountsOnlyAnAbsoluteRealDirectoryOfTheUserAsItsOwn) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "real");
  fs::create_directory_symlink(temporary / "real", temporary / "link");
  testing::writeFile(temporary / "file", "x");
  EXPECT_TRUE(isOwnDirectory(temporary / "real"));
  EXPECT_TRUE(isOwnDirectory(temporary / "real/"));
  EXPECT_FALSE(isOwnDirectory(temporary / "link"));
  EXPECT_FALSE(isOwnDirectory(temporary / "link/"));
  EXPECT_FALSE(isOwnDirectory(temporary / "file"));
  EXPECT_FALSE(isOwnDirectory(temporary / "missing"));
  EXPECT_FALSE(isOwnDirectory(fs::relative(temporary / "real")));
  EXPECT_FALSE(isOwnDirectory(""));
}

TEST(PrivateFolder, IsMadeWithItsParentsForTheUserAlone) {
  const TemporaryDirectory temporary;
  const auto folder = openPrivateFolder(temporary / "a" / "b");
  EXPECT_EQ(modeOf(temporary / "a" / "b"), 0700u);
  EXPECT_EQ(::fcntl(folder.get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(PrivateFolder, IsClosedToOthersWhenItStoodOpen) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "open");
  ::chmod((temporary / "open").c_str(), 0777);
  openPrivateFolder(temporary / "open");
  EXPECT_EQ(modeOf(temporary / "open"), 0700u);
}

TEST(PrivateFolder, RefusesALinkAndAFile) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "real");
  fs::create_directory_symlink(temporary / "real", temporary / "link");
  testing::writeFile(temporary / "file", "x");
  EXPECT_THROW(openPrivateFolder(temporary / "link"), ForeignFolder);
  EXPECT_THROW(openPrivateFolder(temporary / "file"), ForeignFolder);
}

TEST(PrivateFolder, SaysWhyItCannotBeMade) {
  const TemporaryDirectory temporary;
  testing::writeFile(temporary / "file", "x");
  EXPECT_THROW(openPrivateFolder(temporary / "file" / "below"), fs::filesystem_error);
}

}  // namespace
}  // namespace velmora
