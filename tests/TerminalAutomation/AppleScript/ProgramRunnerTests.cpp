#include <gtest/gtest.h>

#include <system_error>

#include "TerminalAutomation/AppleScript/ScreenCaptureTool.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

std::chrono::steady_clock::time_point in(std::chrono::milliseconds time) {
  return std::chrono::steady_clock::now() + time;
}

TEST(SystemProgramRunner, ReturnsTheExitStatus) {
  SystemProgramRunner programs(Environment{{"PATH", "/usr/bin:/bin"}});
  EXPECT_EQ(programs.run("/bin/sh", {"-c", "exit 3"}, in(30s)), 3);
  EXPECT_EQ(programs.run("/bin/sh", {"-c", "kill -9 $$"}, in(30s)), 128 + 9);
}

TEST(SystemProgramRunner, PassesArgumentsAndTheEnvironmentOn) {
  const TemporaryDirectory directory;
  SystemProgramRunner programs(Environment{{"PATH", "/usr/bin:/bin"}, {"GREETING", "a=b"}});
  EXPECT_EQ(programs.run("/bin/sh", {"-c", "echo \"$GREETING $1\" > \"$2\"", "sh", "x y", directory / "out"},
                         in(30s)),
            0);
  EXPECT_EQ(testing::contentOf(directory / "out"), "a=b x y\n");
}

TEST(SystemProgramRunner, AProgramThatIsNotThereThrows) {
  SystemProgramRunner programs(Environment{});
  try {
    programs.run("/nonexistent/tool", {}, in(30s));
    FAIL() << "nothing was thrown";
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code().value(), ENOENT);
  }
}

TEST(SystemProgramRunner, AProgramThatHangsIsKilled) {
  SystemProgramRunner programs(Environment{});
  EXPECT_EQ(programs.run("/bin/sleep", {"60"}, in(50ms)), 128 + 9);
}

TEST(SystemProgramRunner, CancellingEndsEveryRun) {
  SystemProgramRunner programs(Environment{});
  programs.cancel();
  EXPECT_EQ(programs.run("/bin/sleep", {"60"}, in(30s)), 128 + 9);
}

}  // namespace
}  // namespace velmora
