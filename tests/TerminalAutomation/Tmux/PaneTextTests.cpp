#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/PaneText.h"

namespace velmora {
namespace {

TEST(PaneText, LosesBlanksAtLineEndsAndEmptyLinesAtTheEnd) {
  EXPECT_EQ(tidyPaneText(""), "");
  EXPECT_EQ(tidyPaneText("\n"), "");
  EXPECT_EQ(tidyPaneText(" \n\t\n  "), "");
  EXPECT_EQ(tidyPaneText("a"), "a");
  EXPECT_EQ(tidyPaneText("a \t \n"), "a");
  EXPECT_EQ(tidyPaneText("\n\n  a b  \n\n c\n   \n\n"), "\n\n  a b\n\n c");
  EXPECT_EQ(tidyPaneText("a\nb"), "a\nb");
}

TEST(PaneText, IsWellFormed) { EXPECT_EQ(tidyPaneText("a\xff \n"), "a\xef\xbf\xbd"); }

TEST(PaneText, OneCharacterCanBeTooLongToo) {
  std::string marks = "a";
  while (marks.size() < 600'000) marks += "\xe0\xa4\x83";  // U+0903 joins what stands before it
  for (const std::int64_t characters : {1, 40, 50'000}) {
    const TextEnd end = boundedEnd(marks, characters);
    EXPECT_LE(end.text.size(), static_cast<std::size_t>(256 + 8 * characters));
    EXPECT_LT(characterCount(end.text), end.totalCharacters) << "truncated";
  }
  std::string many;
  while (many.size() < 2'000'000) many += "a" + marks.substr(1, 30);
  EXPECT_LE(boundedEnd(many, 50'000).text.size(), 900'000u);
  EXPECT_GT(boundedEnd(marks, 1).totalCharacters, 1);
}

TEST(PaneText, WhatPeopleWriteIsNotCut) {
  const std::string family = "\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x91\xa7";
  const std::string alone = "x" + family;
  EXPECT_EQ(boundedEnd(alone, 1).text, family);
  const std::string text = "ab" + family + "한";
  const TextEnd end = boundedEnd(text, 3);
  EXPECT_EQ(end.text, "b" + family + "한");
  EXPECT_EQ(end.totalCharacters, 4);
}

}  // namespace
}  // namespace velmora
