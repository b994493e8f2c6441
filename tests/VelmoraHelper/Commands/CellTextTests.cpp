#include <gmock/gmock.h>

#include "VelmoraHelper/Commands/CellText.h"
#include "tests/support/Utf8Locale.h"

namespace velmora {
namespace {

class CellText : public ::testing::Test {
 protected:
  CellText() { testing::useUtf8Locale(); }
};

TEST_F(CellText, ShowsNothingThatSteersATerminal) {
  EXPECT_EQ(shownText("a\x1B[31mb\x07\n\t\xC2\x9Bz"), "a?[31mb????z");
  EXPECT_EQ(shownText("\xFF\xC3"), "\uFFFD\uFFFD");
  EXPECT_EQ(shownText("a\u202Eb\u2066c\u200Dd\uFEFFe\uFE0F"), "abcde");
}

TEST_F(CellText, KeepsAFewMarksOnALetterAndNoneWithoutOne) {
  EXPECT_EQ(shownText("\u0301a"), "a");
  EXPECT_EQ(shownText("e\u0301\u0302\u0303\u0304\u0305x"), "e\u0301\u0302\u0303x");
}

TEST_F(CellText, CountsWideCharactersAsTwoColumnsAndMarksAsNone) {
  EXPECT_EQ(columnsOf("abc"), 3);
  EXPECT_EQ(columnsOf("한국어"), 6);
  EXPECT_EQ(columnsOf("e\u0301"), 1);
  EXPECT_EQ(columnsOf(""), 0);
}

TEST_F(CellText, CutsAtAColumnAndSaysThatSomethingIsLeftOut) {
  EXPECT_EQ(clipped("abcdef", 6), "abcdef");
  EXPECT_EQ(clipped("abcdefg", 6), "abcde…");
  EXPECT_EQ(clipped("한국어", 5), "한국…");
  EXPECT_EQ(clipped("한국어", 4), "한…");
  EXPECT_EQ(clipped("ae\u0301o", 2), "a…");
  EXPECT_EQ(clipped("e\u0301x", 2), "e\u0301x");
  EXPECT_EQ(clipped("abc", 0), "");
}

TEST_F(CellText, FillsUpToExactlySoManyColumns) {
  for (int columns = 0; columns < 12; ++columns) {
    EXPECT_EQ(columnsOf(padded("한국어 e\u0301x", columns)), columns);
    EXPECT_EQ(columnsOf(padded("", columns)), columns);
  }
}

TEST_F(CellText, BreaksLongTextIntoLines) {
  EXPECT_EQ(wrapped("abcdefg", 3), (std::vector<std::string>{"abc", "def", "g"}));
  EXPECT_EQ(wrapped("한국어", 3), (std::vector<std::string>{"한", "국", "어"}));
  EXPECT_EQ(wrapped("", 3), std::vector<std::string>{""});
}

TEST_F(CellText, ShowsWhatTheCharacterSetHasNotAsQuestionMarks) {
  std::setlocale(LC_CTYPE, "C");
  EXPECT_EQ(shownText("aé한"), "a??");
  EXPECT_EQ(clipped("abcdef", 3), "ab~");
}

}  // namespace
}  // namespace velmora
