#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "System/Environment.h"

namespace velmora {
namespace {

TEST(Environment, AnswersEmptyForWhatIsNotSet) {
  const Environment environment{{"NAME", "value"}, {"EMPTY", ""}};
  EXPECT_EQ(environmentValue(environment, "NAME"), "value");
  EXPECT_EQ(environmentValue(environment, "EMPTY"), "");
  EXPECT_EQ(environmentValue(environment, "OTHER"), "");
}

TEST(Environment, TakesOnlyAnAbsolutePathForAPath) {
  const Environment environment{{"ABSOLUTE", "/a/b"}, {"RELATIVE", "a/b"}, {"EMPTY", ""}};
  EXPECT_EQ(environmentPath(environment, "ABSOLUTE"), "/a/b");
  for (const char* name : {"RELATIVE", "EMPTY", "OTHER"}) EXPECT_EQ(environmentPath(environment, name), "");
}

TEST(Environment, ListsWhatANewProcessTakes) {
  EXPECT_THAT(environmentList({{"A", "1"}, {"B", ""}, {"C", "x=y"}}),
              ::testing::ElementsAre("A=1", "B=", "C=x=y"));
}

TEST(Environment, FindsABaseDirectoryByTheVariableThenUnderTheHome) {
  const auto folderOf = [](const Environment& environment) {
    return baseDirectory(environment, "XDG_DATA_HOME", ".local/share");
  };
  EXPECT_EQ(folderOf({{"XDG_DATA_HOME", "/data"}, {"HOME", "/home/ann"}}), "/data");
  EXPECT_EQ(folderOf({{"XDG_DATA_HOME", "data"}, {"HOME", "/home/ann"}}), "/home/ann/.local/share");
  EXPECT_EQ(folderOf({{"HOME", "/home/ann"}}), "/home/ann/.local/share");
  EXPECT_EQ(folderOf({{"HOME", "ann"}}), "");
  EXPECT_EQ(folderOf({}), "");
}

}  // namespace
}  // namespace velmora
