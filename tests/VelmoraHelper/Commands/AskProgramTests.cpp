#include <gmock/gmock.h>

#include "VelmoraHelper/Commands/AskProgram.h"
#include "tests/support/Eventually.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using End = ProgramAnswer::End;
using std::chrono::milliseconds;

const Environment environment{{"PATH", "/usr/bin:/bin"}, {"GREETING", "hello"}};
constexpr milliseconds ample{20000};

ProgramAnswer shell(const std::string& script, milliseconds deadline = ample) {
  return askProgram({"sh", "-c", script}, environment, deadline);
}

TEST(AskProgram, ReturnsWhatTheProgramSaysAndItsStatus) {
  const auto answer = shell("echo $GREETING; echo secret >&2; exit 3");
  EXPECT_EQ(answer.end, End::exited);
  EXPECT_EQ(answer.output, "hello\n");
  EXPECT_EQ(answer.exitStatus, 3);
  EXPECT_THAT(answer.path.string(), ::testing::EndsWith("/sh"));
  EXPECT_EQ(shell("kill -9 $$").exitStatus, 128 + 9);
}

TEST(AskProgram, GivesTheProgramNothingToRead) { EXPECT_EQ(shell("cat; echo end").output, "end\n"); }

TEST(AskProgram, KillsAProgramThatTakesTooLong) {
  const TemporaryDirectory directory;
  const auto file = (directory / "pid").string();
  const auto answer = shell("echo $$ >" + file + "; exec tail -f /dev/null", milliseconds(300));
  EXPECT_EQ(answer.end, End::killed);
  EXPECT_FALSE(testing::isAlive(static_cast<pid_t>(std::stol(testing::contentOf(file)))));
}

TEST(AskProgram, KillsAProgramThatClosedItsOutputAndGoesOn) {
  EXPECT_EQ(shell("exec tail -f /dev/null >/dev/null", milliseconds(100)).end, End::killed);
}

TEST(AskProgram, KillsAProgramThatTalksWithoutEnd) {
  const auto answer = shell("while :; do echo more; done", milliseconds(500));
  EXPECT_EQ(answer.end, End::killed);
  EXPECT_LT(answer.output.size(), 100000u);
}

TEST(AskProgram, DoesNotWaitForWhatTheProgramLeftBehind) {
  const auto answer = shell("tail -f /dev/null & echo $!; exit 0", milliseconds(300));
  EXPECT_THAT(answer.output, ::testing::MatchesRegex("[0-9]+\n"));
  ::kill(static_cast<pid_t>(std::stol(answer.output)), SIGKILL);
}

TEST(AskProgram, SaysThatThereIsNoSuchProgram) {
  const auto answer = askProgram({"no-such-program"}, environment, ample);
  EXPECT_EQ(answer.end, End::notFound);
  EXPECT_TRUE(answer.path.empty());
}

}  // namespace
}  // namespace velmora
