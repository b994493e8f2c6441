#include <gtest/gtest.h>

#include "TerminalAutomation/AppleScript/ScreenCaptureTool.h"
#include "TerminalAutomation/PlatformError.h"
#include "tests/TerminalAutomation/AppleScript/ScriptedHost.h"
#include "tests/support/FakeTime.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class ScreenCaptureToolTest : public ::testing::Test {
 protected:
  std::filesystem::path capture(const ScreenBounds& bounds) {
    return captureScreenBounds(bounds, directory_ / "temporary", testing::numberedUuid(0xABCD), programs_,
                               deadline_);
  }
  std::string rectangleOf(const ScreenBounds& bounds) {
    capture(bounds);
    return state_.runs.back()[3];
  }
  std::int64_t failureOf(const ScreenBounds& bounds) {
    try {
      capture(bounds);
    } catch (const PlatformError& error) {
      EXPECT_EQ(error.domain(), "Velmora.ScreenCapture");
      EXPECT_STREQ(error.what(), "");
      return error.code();
    }
    ADD_FAILURE() << "nothing was thrown";
    return -1;
  }

  TemporaryDirectory directory_;
  testing::ScriptedPrograms::State state_;
  const std::chrono::steady_clock::time_point deadline_ =
      std::chrono::steady_clock::now() + std::chrono::minutes(1);
  testing::ScriptedPrograms programs_{state_};
};

TEST_F(ScreenCaptureToolTest, RunsTheSystemsToolOnceAndReturnsItsFile) {
  const auto path = capture({.left = 10, .top = 20, .right = 810, .bottom = 620});
  EXPECT_EQ(path, directory_ / "temporary/Velmora/terminal-00000000-0000-0000-0000-00000000ABCD.png");
  EXPECT_EQ(state_.runs, (std::vector<std::vector<std::string>>{
                             {"/usr/sbin/screencapture", "-x", "-R", "10,20,800,600", path.string()}}));
}

TEST_F(ScreenCaptureToolTest, MakesAFolderForItsOwnerAlone) {
  capture({.right = 1, .bottom = 1});
  EXPECT_EQ(testing::modeOf(directory_ / "temporary/Velmora"), 0700u);
}

TEST_F(ScreenCaptureToolTest, AWindowIsAtLeastOnePointWideAndHigh) {
  EXPECT_EQ(rectangleOf({.left = 500, .top = 10, .right = 100, .bottom = 20}), "500,10,1,10");
  EXPECT_EQ(rectangleOf({.left = 5, .top = 30, .right = 5, .bottom = 10}), "5,30,1,1");
  EXPECT_EQ(rectangleOf({.left = -2147483648, .top = 0, .right = 2147483647, .bottom = 2}),
            "-2147483648,0,4294967295,2");
}

TEST_F(ScreenCaptureToolTest, AToolThatFailsGivesItsStatus) {
  state_.status = 7;
  EXPECT_EQ(failureOf({.right = 1, .bottom = 1}), 7);
}

TEST_F(ScreenCaptureToolTest, AToolThatSucceedsWithoutAFileGivesZero) {
  state_.writesFile = false;
  EXPECT_EQ(failureOf({.right = 1, .bottom = 1}), 0);
}

TEST_F(ScreenCaptureToolTest, AToolThatCannotStartSaysWhy) {
  state_.starts = false;
  EXPECT_THROW(capture({.right = 1, .bottom = 1}), std::system_error);
}

TEST_F(ScreenCaptureToolTest, AFolderThatCannotBeMadeStartsNoTool) {
  testing::writeFile(directory_ / "temporary", "a file stands where the folder should be");
  EXPECT_THROW(capture({.right = 1, .bottom = 1}), std::filesystem::filesystem_error);
  EXPECT_TRUE(state_.runs.empty());
}

}  // namespace
}  // namespace velmora
