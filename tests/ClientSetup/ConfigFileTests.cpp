#include <gmock/gmock.h>
#include <unistd.h>

#include "ClientSetup/ConfigFile.h"
#include "tests/support/Files.h"
#include "tests/support/HookedFileSystem.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::modeOf;
using testing::namesIn;
using testing::writeFile;

class ConfigFileTest : public ::testing::Test {
 protected:
  ConfigFile read() { return ConfigFile(files, path, ::geteuid()); }
  std::string problemOf(const std::function<void()>& work) {
    try {
      work();
    } catch (const ConfigFileError& error) {
      return error.what();
    }
    return "no problem";
  }

  TemporaryDirectory folder;
  std::filesystem::path path = folder / "client/mcp.json";
  std::string copyName = "mcp.json.before-velmora-20010101T000000Z";
  testing::HookedFileSystem files;
  const Date now{};
};

TEST_F(ConfigFileTest, MakesTheFileAndItsFolder) {
  auto file = read();
  EXPECT_FALSE(file.isThere());
  EXPECT_EQ(file.text(), "");
  EXPECT_EQ(file.replace("{}", now), std::nullopt);
  EXPECT_EQ(contentOf(path), "{}");
  EXPECT_EQ(modeOf(path), 0600u);
}

TEST_F(ConfigFileTest, KeepsTheOldTextBesideItForTheUserAlone) {
  writeFile(path, "old");
  std::filesystem::permissions(path, std::filesystem::perms{0644});
  EXPECT_EQ(read().replace("new", now), path.parent_path() / copyName);
  EXPECT_EQ(read().replace("newer", now), path.parent_path() / (copyName + "-2"));
  EXPECT_EQ(contentOf(path), "newer");
  EXPECT_EQ(modeOf(path), 0644u);
  EXPECT_EQ(contentOf(path.parent_path() / copyName), "old");
  EXPECT_EQ(modeOf(path.parent_path() / copyName), 0600u);
}

TEST_F(ConfigFileTest, LeavesAFileThatAnotherProgramChangedMeanwhile) {
  writeFile(path, "old");
  auto file = read();
  writeFile(path, "theirs");
  EXPECT_EQ(problemOf([&] { file.replace("new", now); }),
            "was changed by another program meanwhile; try again");
  EXPECT_EQ(contentOf(path), "theirs");
  EXPECT_THAT(namesIn(path.parent_path()), ElementsAre("mcp.json"));
}

TEST_F(ConfigFileTest, LeavesWhatIsNoFileOfTheUsersOwn) {
  writeFile(folder / "elsewhere", "kept");
  std::filesystem::create_directories(path.parent_path());
  std::filesystem::create_symlink(folder / "elsewhere", path);
  EXPECT_EQ(problemOf([&] { read(); }), "is a link to another place");
  EXPECT_EQ(contentOf(folder / "elsewhere"), "kept");
  using Kind = FileStanding::Kind;
  EXPECT_EQ(reasonToLeave({.owner = 7}, 7), std::nullopt);
  EXPECT_EQ(reasonToLeave({.owner = 7}, 8), "belongs to another user");
  EXPECT_EQ(reasonToLeave({.kind = Kind::other, .owner = 7}, 7), "is no regular file");
  EXPECT_EQ(reasonToLeave({.owner = 7, .mode = 0444}, 7), "is read-only");
  EXPECT_THAT(*reasonToLeave({.owner = 7, .names = 2}, 7), HasSubstr("has another name"));
}

TEST_F(ConfigFileTest, SeesHowAFileReallyStands) {
  writeFile(path, "x");
  std::filesystem::permissions(path, std::filesystem::perms{0440});
  const auto standing = fileStanding(path);
  EXPECT_EQ(standing->owner, ::geteuid());
  EXPECT_EQ(standing->mode, 0440u);
  EXPECT_EQ(standing->names, 1u);
  EXPECT_EQ(problemOf([&] { read(); }), "is read-only");
  std::filesystem::create_hard_link(path, folder / "second");
  EXPECT_EQ(fileStanding(path)->names, 2u);
  EXPECT_EQ(fileStanding(folder.path())->kind, FileStanding::Kind::other);
  EXPECT_EQ(fileStanding(folder / "none/at/all"), std::nullopt);
}

// Whichever step fails, the file is as it was, and nothing new lies beside it.
TEST_F(ConfigFileTest, LosesNothingWhenAnyStepFails) {
  writeFile(path, "old");
  int failures = 0;
  for (const auto* step : {"createDirectories", "create", "setMode", "rename"}) {
    files.work();
    auto file = read();
    files.failOn(step, std::errc::no_space_on_device);
    EXPECT_THAT(problemOf([&] { file.replace("new", now); }), HasSubstr("No space left on device")) << step;
    EXPECT_EQ(contentOf(path), "old") << step;
    EXPECT_THAT(namesIn(path.parent_path()), ElementsAre("mcp.json")) << step;
    ++failures;
  }
  EXPECT_EQ(failures, 4);
}

TEST_F(ConfigFileTest, LeavesACopyThatAnotherProgramMakesAtTheSameMoment) {
  writeFile(path, "old");
  auto file = read();
  files.before = [&](const std::string& operation, const std::filesystem::path& at) {
    if (operation == "create" && at.filename() == copyName) writeFile(at, "another's");
  };
  EXPECT_EQ(file.replace("new", now), path.parent_path() / (copyName + "-2"));
  EXPECT_EQ(contentOf(path.parent_path() / copyName), "another's");
  EXPECT_EQ(contentOf(path.parent_path() / (copyName + "-2")), "old");
}

TEST_F(ConfigFileTest, SaysThatTheCopyCannotBeMade) {
  writeFile(path, "old");
  auto file = read();
  files.before = [](const std::string& operation, const std::filesystem::path& at) {
    if (operation == "create" && at.string().find("before-velmora") != std::string::npos)
      throw std::system_error(std::make_error_code(std::errc::no_space_on_device), operation);
  };
  EXPECT_THAT(problemOf([&] { file.replace("new", now); }), HasSubstr("cannot be copied to "));
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_THAT(namesIn(path.parent_path()), ElementsAre("mcp.json"));
}

}  // namespace
}  // namespace velmora
