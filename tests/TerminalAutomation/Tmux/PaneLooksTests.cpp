#include <gmock/gmock.h>

#include "TerminalAutomation/Tmux/PaneLooks.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using testing::samplePane;

class PaneLooksTest : public ::testing::Test {
 protected:
  PaneLooksTest() {
    for (const PaneRow& row : {first_, second_}) {
      processes_.states[row.process] = {.name = "bash", .group = row.process, .foregroundGroup = row.process};
      processes_.modes[row.tty] = {.editsLine = true};
    }
  }
  void makeBusy(const PaneRow& row) { processes_.states[row.process].foregroundGroup = 1; }

  testing::ScriptedProcesses::State processes_;
  const testing::ScriptedProcesses table_{processes_};
  PaneLooks looks_{table_, [](std::chrono::milliseconds) {}};
  PaneRow first_ = samplePane(1, 1);
  PaneRow second_ = samplePane(2, 2);
};

TEST_F(PaneLooksTest, AreTakenAheadOfTheExpectedPanes) {
  EXPECT_TRUE(looks_.lookAhead().empty()) << "nothing was listed yet";
  looks_.expect({&first_, &second_});
  makeBusy(second_);
  const auto ahead = looks_.lookAhead();
  makeBusy(first_);
  EXPECT_THAT(looks_.areBusy({&first_, &second_}, ahead), ElementsAre(false, true)) << "as it was then";
  EXPECT_THAT(looks_.areBusy({&first_, &second_}), ElementsAre(true, true));
}

TEST_F(PaneLooksTest, AreTakenAnewOfAnotherProcessOrTerminal) {
  looks_.expect({&first_, &second_});
  const auto ahead = looks_.lookAhead();
  const PaneRow third = samplePane(3, 3);
  makeBusy(third);
  first_.tty = "/dev/pts/9";
  makeBusy(first_);
  second_.process = 77;
  EXPECT_THAT(looks_.areBusy({&first_, &second_, &third}, ahead), ElementsAre(true, true, true));
}

TEST_F(PaneLooksTest, OfADeadPaneAreIdle) {
  first_.dead = true;
  looks_.expect({&first_});
  EXPECT_TRUE(looks_.lookAhead().empty());
  makeBusy(first_);
  EXPECT_THAT(looks_.areBusy({&first_}), ElementsAre(false));
}

}  // namespace
}  // namespace velmora
