#include <gmock/gmock.h>

#include "VelmoraHelper/Commands/TerminalCheck.h"

namespace velmora {
namespace {

using End = ProgramAnswer::End;
using ::testing::HasSubstr;

Check checkOf(const ProgramAnswer& answer) {
  return checkTerminalProgram([&](const std::vector<std::string>& command) {
    EXPECT_EQ(command, (std::vector<std::string>{"tmux", "-V"}));
    return answer;
  });
}

Check checkOf(const std::string& output) {
  return checkOf({.end = End::exited, .output = output, .path = "/usr/bin/tmux"});
}

TEST(TerminalCheckLinux, PassesAVersionThatTheAdapterCanDrive) {
  for (const auto* version : {"tmux 3.2", "tmux 3.2a", "tmux 3.3a", "tmux 3.10", "tmux 4.0", "tmux next-3.6",
                              "tmux openbsd-7.5", "tmux master"}) {
    EXPECT_TRUE(checkOf(version + std::string("\n")).ok) << version;
  }
  EXPECT_EQ(checkOf("tmux 3.3a\n").finding, "tmux 3.3a at /usr/bin/tmux");
}

TEST(TerminalCheckLinux, FindsAVersionThatIsTooOld) {
  for (const auto* version : {"tmux 3.1c", "tmux 2.9", "tmux 1.8", "tmux 3"}) {
    const auto check = checkOf(version + std::string("\n"));
    EXPECT_FALSE(check.ok) << version;
    EXPECT_THAT(check.finding, HasSubstr("too old"));
    EXPECT_THAT(check.nextStep, HasSubstr("Install tmux 3.2 or newer."));
  }
}

TEST(TerminalCheckLinux, FindsThatTmuxIsMissing) {
  const auto check = checkOf(ProgramAnswer{});
  EXPECT_FALSE(check.ok);
  EXPECT_EQ(check.finding, "not found");
  EXPECT_EQ(check.nextStep, "Install tmux 3.2 or newer.");
}

TEST(TerminalCheckLinux, FindsATmuxThatHangsOrFails) {
  EXPECT_THAT(checkOf({.end = End::killed, .path = "/opt/tmux"}).finding,
              HasSubstr("/opt/tmux does not answer"));
  EXPECT_FALSE(
      checkOf({.end = End::exited, .exitStatus = 127, .output = "tmux 3.4\n", .path = "/opt/tmux"}).ok);
  EXPECT_FALSE(checkOf("").ok);
  EXPECT_FALSE(checkOf("something else 9.9\n").ok);
}

}  // namespace
}  // namespace velmora
