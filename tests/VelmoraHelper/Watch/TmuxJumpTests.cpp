#include <gmock/gmock.h>

#include "VelmoraHelper/Watch/TmuxJump.h"
#include "tests/VelmoraHelper/Watch/WatchRecords.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

class TmuxJump : public ::testing::Test {
 protected:
  std::string jump(const PersonSession& named) {
    return jumpTo(named.session, named.targets, environment, [this](const auto& command) {
      asked.push_back(command);
      return asked.size() == 1 ? answer : ProgramAnswer{.end = ProgramAnswer::End::exited};
    });
  }
  const PersonSession session = testing::watchedSessions()[1];
  Environment environment{{"TMUX", "/tmp/tmux-0/default,1,0"}};
  ProgramAnswer answer{.end = ProgramAnswer::End::exited, .output = session.session.tty + "\n"};
  std::vector<std::vector<std::string>> asked;
};

TEST_F(TmuxJump, SwitchesTheUsersClientToTheWindowAndThePane) {
  EXPECT_EQ(jump(session), "");
  EXPECT_EQ(asked.at(1), (std::vector<std::string>{"tmux", "switch-client", "-t", "%5", ";", "select-window",
                                                   "-t", "%5", ";", "select-pane", "-t", "%5"}));
}

TEST_F(TmuxJump, GoesNowhereWhenThePaneOfThatNumberIsAnotherServers) {
  answer.output = "/dev/pts/77\n";
  EXPECT_THAT(jump(session), HasSubstr("another tmux server"));
  answer = {.end = ProgramAnswer::End::exited, .exitStatus = 1};
  asked.clear();
  EXPECT_THAT(jump(session), HasSubstr("another tmux server"));
  EXPECT_EQ(asked.size(), 1u);
}

TEST_F(TmuxJump, SaysHowOutsideTmuxAndThatOtherTerminalsHaveNoPanes) {
  environment.clear();
  EXPECT_THAT(jump(session), HasSubstr("`tmux switch-client -t %5`"));
  EXPECT_THAT(jump(testing::watchedSession('1', {}, "", SessionPermission::managed)), HasSubstr("no pane"));
  EXPECT_TRUE(asked.empty());
}

}  // namespace
}  // namespace velmora
