#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "System/StagedFile.h"
#include "tests/support/Files.h"
#include "tests/support/HookedFileSystem.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using testing::namesIn;
using ::testing::StartsWith;

class StagedFileTest : public ::testing::Test {
 protected:
  void replace() { StagedFile(files, directory / "file", "new content").commit(); }

  TemporaryDirectory directory;
  testing::HookedFileSystem files;
};

TEST_F(StagedFileTest, ReplacesTheContentInOneStep) {
  testing::writeFile(directory / "file", "old content");
  replace();
  EXPECT_EQ(contentOf(directory / "file"), "new content");
  EXPECT_EQ(testing::modeOf(directory / "file"), 0600u);
  EXPECT_THAT(namesIn(directory.path()), ElementsAre("file"));
}

TEST_F(StagedFileTest, LeavesTheFileAloneUntilItIsCommitted) {
  testing::writeFile(directory / "file", "old content");
  {
    const StagedFile staged(files, directory / "file", "new content");
    EXPECT_EQ(contentOf(directory / "file"), "old content");
    EXPECT_THAT(namesIn(directory.path()), ElementsAre("file", StartsWith("file.tmp.")));
    EXPECT_EQ(contentOf(directory / namesIn(directory.path())[1]), "new content");
  }
  EXPECT_EQ(contentOf(directory / "file"), "old content");
  EXPECT_THAT(namesIn(directory.path()), ElementsAre("file"));
}

TEST_F(StagedFileTest, TwoAtOnceNeverMeet) {
  StagedFile one(files, directory / "file", "one");
  StagedFile other(files, directory / "file", "the other");
  other.commit();
  EXPECT_EQ(contentOf(directory / "file"), "the other");
  one.commit();
  EXPECT_EQ(contentOf(directory / "file"), "one");
  EXPECT_THAT(namesIn(directory.path()), ElementsAre("file"));
}

TEST_F(StagedFileTest, IsNotKeptFromItsPlaceByWhatStandsBesideTheFile) {
  std::filesystem::create_directories(directory / "file.tmp");
  replace();
  EXPECT_EQ(contentOf(directory / "file"), "new content");
}

TEST_F(StagedFileTest, RemovesWhatCrashesLeftBehindAndNothingElse) {
  for (const auto* name : {"file.tmp", "file.tmp.1", "file", "other.tmp.1"})
    testing::writeFile(directory / name, "half a lin");
  std::filesystem::create_directories(directory / "file.tmp.folder");
  StagedFile::removeLeftovers(files, directory / "file");
  EXPECT_THAT(namesIn(directory.path()), ElementsAre("file", "file.tmp.folder", "other.tmp.1"));
  StagedFile::removeLeftovers(files, directory / "nowhere" / "file");
}

TEST_F(StagedFileTest, AFolderThatCannotBeFlushedIsADoubtAndNoFailure) {
  files.failOn("flushDirectory", std::errc::io_error);
  StagedFile staged(files, directory / "file", "new content");
  EXPECT_EQ(staged.commit(), std::errc::io_error);
  EXPECT_EQ(contentOf(directory / "file"), "new content");
}

TEST_F(StagedFileTest, LeavesOldOrNewContentWhereverAStepFails) {
  int step = 0;
  for (;; ++step) {
    testing::writeFile(directory / "file", "old content");
    files.failAt(step, false, std::errc::no_space_on_device);
    try {
      replace();
    } catch (const std::system_error& error) {
      EXPECT_EQ(error.code(), std::errc::no_space_on_device);
    }
    const bool failed = files.failed();
    files.work();
    if (!failed) break;
    EXPECT_THAT(contentOf(directory / "file"), ::testing::AnyOf("old content", "new content")) << step;
    EXPECT_THAT(namesIn(directory.path()), ElementsAre("file")) << step;
  }
  EXPECT_EQ(step, 3);  // create, rename, flush
}

TEST_F(StagedFileTest, LeavesOldOrNewContentWhereverTheMachineStops) {
  for (int step = 0;; ++step) {
    testing::writeFile(directory / "file", "old content");
    files.failAt(step, true);
    try {
      replace();
    } catch (const std::system_error&) {
      EXPECT_TRUE(files.failed());
    }
    const bool failed = files.failed();
    files.work();
    if (!failed) break;
    EXPECT_THAT(contentOf(directory / "file"), ::testing::AnyOf("old content", "new content")) << step;
    StagedFile::removeLeftovers(files, directory / "file");
    replace();
    EXPECT_EQ(contentOf(directory / "file"), "new content") << step;
    EXPECT_THAT(namesIn(directory.path()), ElementsAre("file")) << step;
  }
}

}  // namespace
}  // namespace velmora
