#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/PaneCursor.h"

namespace velmora {
namespace {

const PaneRow pane{.serverStart = 1, .pane = 3, .tty = "/dev/pts/3"};

// A row that ends with "\\" goes on in the next.
PaneGrid grid(const std::vector<std::string>& rows, std::int64_t history = 0, std::int64_t limit = 2000,
              std::int64_t columns = 10) {
  std::string plain;
  std::string joined;
  for (auto row : rows) {
    const bool goesOn = row.ends_with('\\');
    if (goesOn) row.pop_back();
    plain += row + "\n";
    joined += row + (goesOn ? "" : "\n");
  }
  // Its screen has three rows.
  const auto above = std::ssize(rows) - 3;
  auto parsed = PaneGrid::parse("\t" + std::to_string(history) + "\t" + std::to_string(columns) + "\t3\t" +
                                    std::to_string(limit) + "\n" + plain + joined,
                                above, false);
  if (!parsed) throw std::logic_error("no grid");
  return *parsed;
}

TEST(PaneCursor, ComesBackFromItsText) {
  const PaneCursor cursor{
      .row = 123456, .columns = 80, .above = 16, .anchor = 0xFEDCBA9876543210U, .line = 0xFFFFFFFFU};
  EXPECT_EQ(PaneCursor::parse(cursor.toString()), cursor);
  EXPECT_LT(cursor.toString().size(), 40u);
  EXPECT_EQ(cursor.toString().find_first_not_of("0123456789abcdefghijklmnopqrstuvwxyz-"), std::string::npos);
}

TEST(PaneCursor, NothingElseIsOne) {
  for (const std::string text :
       {"", "t", "t1", "x1-1-0-1-1", "t1-1-0-1", "t1-1-0-1-1-1", "t1-1-0-1-1-", "t-1-1-0-1-1", "t1-1-2-1-1",
        "t5-1-zz-1-1", "t1-1-0-zzzzzzzzzzzzzzzzzz-1", "t1--0-1-1", "tzzzzzzzzzzzz-1-0-1-1"})
    EXPECT_EQ(PaneCursor::parse(text), std::nullopt) << text;
}

TEST(PaneCursor, StandsAtTheBeginningOfTheLastLine) {
  const auto cursor = PaneCursor::atEndOf(grid({"one", "0123456789\\", "ab", "", ""}, 2), pane);
  ASSERT_TRUE(cursor);
  EXPECT_EQ(cursor->row, 1);
  EXPECT_EQ(cursor->above, 1);
  EXPECT_EQ(cursor->line, markOf("0123456789ab"));
}

TEST(PaneCursor, WhereItsLineMayBeginHigherThereIsNone) {
  EXPECT_EQ(PaneCursor::atEndOf(grid({"abc", "", "", ""}, 500), pane), std::nullopt);
  EXPECT_TRUE(PaneCursor::atEndOf(grid({"", "abc", "", ""}, 500), pane));
}

TEST(PaneCursor, AnEmptyScreenHasOneOnlyWhereNothingWasEverWritten) {
  EXPECT_TRUE(PaneCursor::atEndOf(grid({"", "", ""}), pane));
  EXPECT_EQ(PaneCursor::atEndOf(grid({"", "", "", ""}, 7), pane), std::nullopt);
}

TEST(PaneCursor, IsFoundWhileTheRowsAboveAreTheSame) {
  const auto cursor = *PaneCursor::atEndOf(grid({"one", "two", "$"}), pane);
  EXPECT_EQ(cursor.find(grid({"one", "two", "$"}), pane), 2);
  EXPECT_EQ(cursor.find(grid({"one", "two", "$ ls", "a", "b"}, 2), pane), 2);
  EXPECT_EQ(cursor.find(grid({"new", "two", "$"}), pane), std::nullopt);
  EXPECT_EQ(cursor.find(grid({"one", "two", "$"}, 0, 2000, 11), pane), std::nullopt) << "another width";
  EXPECT_EQ(cursor.find(grid({"x", "one", "two", "$"}, 1), pane), std::nullopt) << "one row further down";
  PaneRow other = pane;
  other.pane = 4;
  EXPECT_EQ(cursor.find(grid({"one", "two", "$"}), other), std::nullopt);
}

TEST(PaneCursor, IsFoundHigherWhenAFullHistoryHasDroppedRows) {
  const auto cursor = *PaneCursor::atEndOf(grid({"a", "b", "c", "d", "e", "f", "$"}, 4, 20), pane);
  EXPECT_EQ(cursor.find(grid({"a", "b", "c", "d", "e", "f", "$"}, 4, 20), pane), 6);
  // A tenth of twenty is two.
  std::vector<std::string> rows{"a", "b", "c", "d", "e", "f", "$"};
  while (rows.size() < 22) rows.push_back("more " + std::to_string(rows.size()));
  EXPECT_EQ(cursor.find(grid(rows, 19, 20), pane), 6);
}

TEST(PaneCursor, WhereLinesAreAlikeAndRowsMayHaveBeenDroppedItIsLost) {
  std::vector<std::string> alike(22, "y");
  PaneCursor cursor = *PaneCursor::atEndOf(grid(alike, 19, 20), pane);
  cursor.above = 4;
  const auto shorter = *PaneCursor::atEndOf(grid(std::vector<std::string>(8, "y"), 5, 20), pane);
  EXPECT_EQ(shorter.find(grid(std::vector<std::string>(8, "y"), 5, 20), pane), 7);
  EXPECT_EQ(cursor.find(grid(alike, 19, 20), pane), std::nullopt);
}

TEST(PaneCursor, ARowFarBelowAFullHistoryIsLostAtOnce) {
  const PaneCursor forged{.row = std::int64_t{1} << 40, .columns = 10, .above = 1};
  EXPECT_EQ(forged.find(grid({"one", "two", "$"}, 9, 10), pane), std::nullopt);
}

}  // namespace
}  // namespace velmora
