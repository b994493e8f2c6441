#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "System/Log.h"
#include "tests/support/LogLines.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;

TEST(Log, HandsOverLevelAreaAndWords) {
  const testing::LogLines lines;
  const auto log = lines.log();
  log.debug("socket", "one");
  log.info("calls", "two");
  log.warning("history", "three");
  log.error("terminal", "four");
  EXPECT_THAT(lines.all(), ElementsAre("debug socket: one", "info calls: two", "warning history: three",
                                       "error terminal: four"));
}

TEST(Log, SaysNothingWithoutASink) { Log().error("socket", "nobody hears this"); }

TEST(Log, KeepsWhateverItIsGivenOnOneLine) {
  const testing::LogLines lines;
  lines.log().info("socket", "a\nerror socket: forged\x1B[2J\xFF");
  EXPECT_THAT(lines.all(), ElementsAre("info socket: a?error socket: forged?[2J\xEF\xBF\xBD"));
}

TEST(Log, QuotesAStrangersText) {
  EXPECT_EQ(quotedForLog("an agent"), "\"an agent\"");
  EXPECT_EQ(quotedForLog(""), "\"\"");
  EXPECT_EQ(quotedForLog("x\" delivered\r\n"), "\"x' delivered??\"");
}

TEST(Log, CutsALongStrangersTextBetweenTwoCharacters) {
  EXPECT_EQ(quotedForLog(std::string(64, 'a')), '"' + std::string(64, 'a') + '"');
  EXPECT_EQ(quotedForLog(std::string(65, 'a')), '"' + std::string(64, 'a') + "…\"");
  EXPECT_EQ(quotedForLog(std::string(63, 'a') + "한국"), '"' + std::string(63, 'a') + "…\"");
}

}  // namespace
}  // namespace velmora
