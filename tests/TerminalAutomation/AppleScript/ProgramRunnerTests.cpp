#include <gtest/gtest.h>

#include <system_error>

#include "TerminalAutomation/AppleScript/ProgramRunner.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

TEST(SystemProgramRunner, ReturnsTheExitStatus) {
  SystemProgramRunner programs(Environment{{"PATH", "/usr/bin:/bin"}});
  EXPECT_EQ(programs.run("/bin/sh", {"-c", "exit 3"}), 3);
  EXPECT_EQ(programs.run("/bin/sh", {"-c", "kill -9 $$"}), 128 + 9);
}

TEST(SystemProgramRunner, PassesArgumentsAndTheEnvironmentOn) {
  const TemporaryDirectory directory;
  SystemProgramRunner programs(Environment{{"PATH", "/usr/bin:/bin"}, {"GREETING", "a=b"}});
  EXPECT_EQ(programs.run("/bin/sh", {"-c", "echo \"$GREETING $1\" > \"$2\"", "sh", "x y", directory / "out"}),
            0);
  EXPECT_EQ(testing::contentOf(directory / "out"), "a=b x y\n");
}

TEST(SystemProgramRunner, AProgramThatIsNotThereThrows) {
  SystemProgramRunner programs(Environment{});
  try {
    programs.run("/nonexistent/tool", {});
    FAIL() << "nothing was thrown";
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code().value(), ENOENT);
  }
}

TEST(SystemProgramRunner, AProgramThatHangsIsKilled) {
  SystemProgramRunner programs(Environment{}, 50ms);
  EXPECT_EQ(programs.run("/bin/sleep", {"60"}), 128 + 9);
}

TEST(SystemProgramRunner, CancellingEndsEveryRun) {
  SystemProgramRunner programs(Environment{});
  programs.cancel();
  EXPECT_EQ(programs.run("/bin/sleep", {"60"}), 128 + 9);
}

}  // namespace
}  // namespace velmora
