#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>
#include <unistd.h>

#include "BridgeHost/ProgramLog.h"

namespace velmora {
namespace {

using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

Environment journalOf(int descriptor) {
  struct stat status {};
  EXPECT_EQ(::fstat(descriptor, &status), 0);
  return {{"JOURNAL_STREAM", std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino)}};
}

TEST(ProgramLog, KnowsTheJournalByItsStream) {
  EXPECT_TRUE(isJournal(journalOf(STDERR_FILENO), STDERR_FILENO));
  EXPECT_FALSE(isJournal({}, STDERR_FILENO));
  EXPECT_FALSE(isJournal({{"JOURNAL_STREAM", ""}}, STDERR_FILENO));
  EXPECT_FALSE(isJournal({{"JOURNAL_STREAM", "8:123456789"}}, STDERR_FILENO)) << "someone else's stream";
  EXPECT_FALSE(isJournal(journalOf(STDERR_FILENO), -1));
}

TEST(ProgramLog, GivesTheJournalPrioritiesAndNoTime) {
  CaptureStderr();
  const auto log = programLog(journalOf(STDERR_FILENO));
  log.error("socket", "one");
  log.warning("history", "two {}");
  log.info("calls", "three");
  log.debug("calls", "is not shown");
  spdlog::warn("four");
  spdlog::critical("five");
  EXPECT_EQ(GetCapturedStderr(), "<3>socket: one\n<4>history: two {}\n<6>calls: three\n<4>four\n<2>five\n");
}

TEST(ProgramLog, GivesAnyoneElseTheTimeAndTheLevel) {
  CaptureStderr();
  programLog({}).warning("history", "two");
  EXPECT_THAT(GetCapturedStderr(),
              ::testing::MatchesRegex("....-..-.. ..:..:..\\.... warning history: two\n"));
}

}  // namespace
}  // namespace velmora
