#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <system_error>

#include "TerminalAutomation/PictureFile.h"
#include "tests/support/FakeTime.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::modeOf;
using testing::namesIn;
using testing::numberedUuid;

TEST(PictureFile, IsForItsOwnerAloneUnderTheIdsUpperCaseName) {
  const TemporaryDirectory directory;
  const Uuid id = *Uuid::parse("0a1b2c3d-0000-4000-8000-00000000abcd");
  const auto path = writePictureFile(directory / "new", id, "bytes");
  EXPECT_EQ(path, directory / "new" / "Velmora" / "terminal-0A1B2C3D-0000-4000-8000-00000000ABCD.png");
  EXPECT_EQ(contentOf(path), "bytes");
  EXPECT_EQ(modeOf(path), 0600u);
  EXPECT_EQ(modeOf(path.parent_path()), 0700u);
}

TEST(PictureFile, AProgramWritesItselfIntoTheSamePrivateFolder) {
  const TemporaryDirectory directory;
  const auto path = pictureFileForProgram(directory / "new", numberedUuid(1));
  EXPECT_EQ(path, directory / "new" / "Velmora" / ("terminal-" + numberedUuid(1).toString() + ".png"));
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(modeOf(path.parent_path()), 0700u);
}

TEST(PictureFile, ClosesAFolderThatWasOpenToOthers) {
  const TemporaryDirectory directory;
  std::filesystem::create_directory(directory / "Velmora");
  ::chmod((directory / "Velmora").c_str(), 0777);
  writePictureFile(directory.path(), numberedUuid(1), "x");
  EXPECT_EQ(modeOf(directory / "Velmora"), 0700u);
}

TEST(PictureFile, NeverOverwritesNorFollowsALink) {
  const TemporaryDirectory directory;
  const auto path = writePictureFile(directory.path(), numberedUuid(1), "first");
  EXPECT_THROW(writePictureFile(directory.path(), numberedUuid(1), "second"), std::system_error);
  EXPECT_EQ(contentOf(path), "first");
  const auto second = path.parent_path() / ("terminal-" + numberedUuid(2).toString() + ".png");
  std::filesystem::create_symlink(directory / "target", second);
  EXPECT_THROW(writePictureFile(directory.path(), numberedUuid(2), "x"), std::system_error);
  EXPECT_FALSE(std::filesystem::exists(directory / "target"));
}

TEST(PictureFile, RefusesAFolderThatIsALinkOrAFile) {
  const TemporaryDirectory directory;
  std::filesystem::create_directory(directory / "elsewhere");
  std::filesystem::create_directory_symlink(directory / "elsewhere", directory / "Velmora");
  EXPECT_THROW(writePictureFile(directory.path(), numberedUuid(1), "x"), std::system_error);
  EXPECT_THROW(pictureFileForProgram(directory.path(), numberedUuid(1)), std::system_error);
  EXPECT_TRUE(namesIn(directory / "elsewhere").empty());
  std::filesystem::remove(directory / "Velmora");
  testing::writeFile(directory / "Velmora", "");
  EXPECT_THROW(writePictureFile(directory.path(), numberedUuid(1), "x"), std::system_error);
}

TEST(PictureFile, RemovesItsOwnOldOnesAndNoOther) {
  const TemporaryDirectory directory;
  const auto folder = writePictureFile(directory.path(), numberedUuid(1), "x").parent_path();
  const auto nameOf = [](std::uint64_t id) { return "terminal-" + numberedUuid(id).toString() + ".png"; };
  const auto aged = [&](const std::string& name, std::chrono::hours age) {
    if (!std::filesystem::exists(folder / name)) testing::writeFile(folder / name, "x");
    std::filesystem::last_write_time(folder / name, std::filesystem::file_time_type::clock::now() - age);
  };
  aged(nameOf(1), std::chrono::hours(25));
  aged(nameOf(2), std::chrono::hours(23));
  aged("terminal-notes.png", std::chrono::hours(100));
  aged("other.png", std::chrono::hours(100));
  std::filesystem::create_directory(folder / nameOf(3));
  testing::writeFile(directory / "target", "kept");
  std::filesystem::last_write_time(directory / "target",
                                   std::filesystem::file_time_type::clock::now() - std::chrono::hours(100));
  std::filesystem::create_symlink(directory / "target", folder / nameOf(4));
  writePictureFile(directory.path(), numberedUuid(5), "x");
  EXPECT_FALSE(std::filesystem::exists(folder / nameOf(1)));
  for (const std::string& name : {nameOf(2), nameOf(3), nameOf(4), nameOf(5), std::string("other.png"),
                                  std::string("terminal-notes.png")}) {
    EXPECT_TRUE(std::filesystem::exists(folder / name)) << name;
  }
  EXPECT_EQ(contentOf(directory / "target"), "kept");
}

TEST(PictureFile, KeepsTheLatestFifty) {
  const TemporaryDirectory directory;
  std::filesystem::path first;
  for (std::uint64_t id = 1; id <= 60; ++id) {
    const auto path = writePictureFile(directory.path(), numberedUuid(id), "x");
    std::filesystem::last_write_time(
        path, std::filesystem::file_time_type::clock::now() - std::chrono::minutes(100 - id));
  }
  EXPECT_EQ(namesIn(directory / "Velmora").size(), 50u);
  const auto nameOf = [](std::uint64_t id) { return "terminal-" + numberedUuid(id).toString() + ".png"; };
  EXPECT_FALSE(std::filesystem::exists(directory / "Velmora" / nameOf(10)));
  EXPECT_TRUE(std::filesystem::exists(directory / "Velmora" / nameOf(11)));
}

TEST(PictureFile, LeavesNothingOfAPictureThatDoesNotFit) {
  const TemporaryDirectory directory;
  // A limit on the size of files stands in for a full disk. Past it a write fails once the signal is ignored.
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{.rlim_cur = 10, .rlim_max = before.rlim_max};
  const auto oldHandler = ::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  EXPECT_THROW(writePictureFile(directory.path(), numberedUuid(1), std::string(100, 'x')), std::system_error);
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, oldHandler);
  EXPECT_TRUE(namesIn(directory / "Velmora").empty());
}

}  // namespace
}  // namespace velmora
