#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/PaneGrid.h"

namespace velmora {
namespace {

TEST(PaneGrid, KnowsTheRowsAndTheirLines) {
  const auto found =
      PaneGrid::parse("\t7\t10\t3\t2000\nold\n0123456789\nab  cd\n$ \nold\n0123456789ab  cd\n$ \n", 1, false);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->history(), 7);
  EXPECT_EQ(found->columns(), 10);
  EXPECT_EQ(found->first(), 6);
  EXPECT_EQ(found->end(), 10);
  EXPECT_EQ(found->row(8), "ab  cd");
  EXPECT_TRUE(found->goesOn(7));
  EXPECT_FALSE(found->goesOn(8));
  EXPECT_EQ(found->text(6), "old\n0123456789ab  cd\n$ \n");
  EXPECT_EQ(found->text(9), "$ \n");
  EXPECT_FALSE(found->mayHaveDropped());
}

TEST(PaneGrid, ReadsTheColoursOfTheSameRows) {
  const auto found =
      PaneGrid::parse("\t0\t4\t2\t9\na  \nbcde\na\nbcde\n\x1B[1ma\nbc\x1B[0mde\n", std::nullopt, true);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->text(0), "\x1B[1ma\nbc\x1B[0mde\n");
  EXPECT_EQ(found->row(1), "bcde");
}

TEST(PaneGrid, NothingElseIsOne) {
  for (const std::string output :
       {"", "\n", "\t0\t4\t2\n", "\t0\t4\t2\t9", "\t0\t4\t2\t9\n", "\t0\t4\t2\t9\na\nb\nc\nb\n",
        "\t0\t4\t2\t9\na\nb\na\nb\nmore\n", "\t0\t4\t2\t-9\na\nb\na\nb\n", "\t0\t4\t2\tx\na\nb\na\nb\n"})
    EXPECT_FALSE(PaneGrid::parse(output, std::nullopt, false)) << output;
}

TEST(PaneGrid, BlanksBeforeALineEndMayBeMissingInTheJoinedText) {
  const auto found = PaneGrid::parse("\t0\t4\t2\t9\na   \n  b \na\n  b\n", std::nullopt, false);
  ASSERT_TRUE(found);
  EXPECT_FALSE(found->goesOn(0));
}

}  // namespace
}  // namespace velmora
