#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/Direct/TmuxTrust.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using Way = TmuxVerdict::Way;

const TmuxSocketStamp one{.device = 1, .file = 2};
const TmuxSocketStamp other{.device = 1, .file = 3};

TEST(TmuxTrust, LetsOneCallerJudgeAndSendsTheOthersToTheProgram) {
  TmuxTrust trust;
  EXPECT_EQ(trust.verdict(one), std::nullopt);
  EXPECT_EQ(trust.verdict(one)->way, Way::program);
  EXPECT_EQ(trust.reason(), std::nullopt) << "that is no verdict yet";
  trust.settle(one, {.way = Way::direct, .server = 7});
  EXPECT_EQ(trust.verdict(one)->way, Way::direct);
  EXPECT_EQ(trust.verdict(one)->server, 7);
}

TEST(TmuxTrust, JudgesAnotherServerAnew) {
  TmuxTrust trust;
  trust.verdict(one);
  trust.settle(one, {.way = Way::direct});
  EXPECT_EQ(trust.verdict(other), std::nullopt);
  trust.settle(one, {.way = Way::direct});
  EXPECT_EQ(trust.verdict(other)->way, Way::program) << "a late verdict is about the server before";
}

TEST(TmuxTrust, JudgesAgainWhatWasLeftUndecidedOrRefused) {
  for (const Way way : {Way::undecided, Way::refused}) {
    TmuxTrust trust;
    trust.verdict(one);
    trust.settle(one, {.way = way});
    EXPECT_EQ(trust.verdict(one), std::nullopt);
  }
}

TEST(TmuxTrust, RemembersAReasonOnce) {
  TmuxTrust trust;
  trust.verdict(one);
  trust.settle(one, {.way = Way::direct});
  EXPECT_TRUE(trust.distrust(one, "it spoke nonsense"));
  EXPECT_FALSE(trust.distrust(one, "again"));
  EXPECT_EQ(trust.verdict(one)->way, Way::program);
  EXPECT_EQ(trust.reason(), "it spoke nonsense");
  EXPECT_FALSE(trust.distrust(other, "of another")) << "it is not the server that is asked now";
}

TEST(TmuxTrust, LetsNoVerdictUndoASurprise) {
  TmuxTrust trust;
  trust.verdict(one);
  trust.distrust(one, "it spoke nonsense");
  trust.settle(one, {.way = Way::direct});
  EXPECT_EQ(trust.verdict(one)->way, Way::program);
}

TEST(TmuxSocketStamp, TellsAFileFromTheNextOfTheSameName) {
  const TemporaryDirectory folder;
  EXPECT_EQ(tmuxSocketStamp(folder / "s"), std::nullopt);
  testing::writeFile(folder / "s", "");
  testing::writeFile(folder / "t", "");
  const auto before = tmuxSocketStamp(folder / "s");
  std::filesystem::permissions(folder / "s", std::filesystem::perms::owner_all);
  EXPECT_EQ(tmuxSocketStamp(folder / "s"), before) << "tmux changes the mode when a client comes or goes";
  std::filesystem::rename(folder / "t", folder / "s");
  EXPECT_NE(tmuxSocketStamp(folder / "s"), before);
}

}  // namespace
}  // namespace velmora
