#include <gtest/gtest.h>

#include <string>

#include "TerminalAutomation/Tmux/Picture/PaneCells.h"

namespace velmora {
namespace {

// A row as text: the cells' texts, a dot for each blank, nothing for a covered column.
std::string rowText(const PaneCells& cells, int row) {
  std::string text;
  for (int column = 0; column < cells.columns(); ++column) {
    const auto& cell = cells.at(column, row);
    if (cell.width > 0) text += cell.text.empty() ? "." : cell.text;
  }
  return text;
}

TEST(PaneCells, PlacesLinesAndLeavesTheRestBlank) {
  const auto cells = parsePaneCells("ab\n\nc\n", 4, 4);
  EXPECT_EQ(rowText(cells, 0), "ab..");
  EXPECT_EQ(rowText(cells, 1), "....");
  EXPECT_EQ(rowText(cells, 2), "c...");
  EXPECT_EQ(rowText(cells, 3), "....");
}

TEST(PaneCells, CarriesTheStyleAcrossLines) {
  const auto cells = parsePaneCells("\033[31ma\nb\033[0mc\n", 2, 2);
  EXPECT_EQ(cells.at(0, 0).style.foreground, CellColour::palette(1));
  EXPECT_EQ(cells.at(0, 1).style.foreground, CellColour::palette(1));
  EXPECT_EQ(cells.at(1, 1).style, CellStyle{});
}

TEST(PaneCells, AWideCharacterCoversTheNextColumn) {
  const auto cells = parsePaneCells("한x\n", 4, 1);
  EXPECT_EQ(cells.at(0, 0).text, "한");
  EXPECT_EQ(cells.at(0, 0).width, 2);
  EXPECT_EQ(cells.at(1, 0).width, 0);
  EXPECT_EQ(cells.at(2, 0).text, "x");
}

TEST(PaneCells, WhatJoinsGoesIntoTheCellBefore) {
  const auto cells = parsePaneCells("e\u0301x👩‍👩‍👧y\n", 6, 1);
  EXPECT_EQ(cells.at(0, 0).text, "e\u0301");
  EXPECT_EQ(cells.at(1, 0).text, "x");
  EXPECT_EQ(cells.at(2, 0).text, "👩‍👩‍👧");
  EXPECT_EQ(cells.at(4, 0).text, "y");
}

TEST(PaneCells, DrawsTheDecLineSet) {
  EXPECT_EQ(rowText(parsePaneCells("\016lqk\017q\n", 5, 1), 0), "┌─┐q.");
}

TEST(PaneCells, LeavesOutLinksAndOtherSequences) {
  EXPECT_EQ(rowText(parsePaneCells("\033]8;;http://a\033\\link\033]8;;\033\\!\n", 6, 1), 0), "link!.");
  EXPECT_EQ(rowText(parsePaneCells("\033]0;title\007a\033(Bb\033[2Kc\033[?25ld\n", 5, 1), 0), "abcd.");
}

TEST(PaneCells, DropsWhatDoesNotFit) {
  const auto cells = parsePaneCells("abcdef\ngh한\nover\n", 3, 2);
  EXPECT_EQ(rowText(cells, 0), "abc");
  EXPECT_EQ(rowText(cells, 1).substr(0, 2), "gh");
}

TEST(PaneCells, SurvivesBrokenInput) {
  for (const std::string& text :
       {std::string("\033"), std::string("\033["), std::string("\033[31"), std::string("\033[999999999999;m"),
        std::string("\033]8;;never ends"), std::string("\016"), std::string("\xFF\xFE\x80"),
        std::string("\xF0\x9F"), std::string("\033[38;5"), std::string("a\0b", 3),
        std::string("\u0301\u200D\uFE0F"), std::string(100000, '\033'), "x" + std::string(100000, '\x80'),
        std::string("\033[1\033[3mi")}) {
    const auto cells = parsePaneCells(text, 3, 2);
    EXPECT_EQ(cells.columns(), 3);
    EXPECT_EQ(cells.rows(), 2);
  }
  EXPECT_EQ(parsePaneCells("\xFFz", 2, 1).at(0, 0).text, "\uFFFD");
  EXPECT_TRUE(parsePaneCells("\033[1\033[3mi", 1, 1).at(0, 0).style.italic);
}

TEST(PaneCells, AMillionJoinersStayInOneSmallCell) {
  std::string text = "a";
  for (int count = 0; count < 100000; ++count) text += "\u0301";
  EXPECT_LE(parsePaneCells(text, 2, 1).at(0, 0).text.size(), PaneCell::maximumBytes);
}

TEST(PaneCells, ClampsItsSize) {
  EXPECT_EQ(PaneCells(0, -5).columns(), 1);
  EXPECT_EQ(PaneCells(0, -5).rows(), 1);
  EXPECT_EQ(PaneCells(1 << 30, 1 << 30).columns(), PaneCells::maximumColumns);
  EXPECT_EQ(PaneCells(1 << 30, 1 << 30).rows(), PaneCells::maximumRows);
}

TEST(PaneCells, ReadsTheFirstCodePointOfEveryLength) {
  EXPECT_EQ(firstCodePoint("ab"), U'a');
  EXPECT_EQ(firstCodePoint("é"), U'é');
  EXPECT_EQ(firstCodePoint("한"), U'한');
  EXPECT_EQ(firstCodePoint("👩‍👩"), U'👩');
}

}  // namespace
}  // namespace velmora
