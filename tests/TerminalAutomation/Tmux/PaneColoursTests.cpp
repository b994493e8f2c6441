#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/PaneColours.h"

namespace velmora {
namespace {

TEST(PaneColours, KeepsColoursAndNothingElse) {
  EXPECT_EQ(onlyColours("a\x1B[1;31mb\x1B[0m\n\tc"), "a\x1B[1;31mb\x1B[0m\n\tc");
  EXPECT_EQ(onlyColours("\x1B]8;;x:y\x1B\\link\x1B]8;;\x1B\\ \x1B]8;;x:y\x07too"), "link too");
  EXPECT_EQ(onlyColours("a\x1B[2Jb\x1B"
                        "cc\x07\x08"),
            "abc");
  EXPECT_EQ(onlyColours("\x0Eqx\x0Fqx"), "─│qx");
  EXPECT_EQ(onlyColours("cut off\x1B[31"), "cut off");
  EXPECT_EQ(onlyColours("cut off\x1B"), "cut off");
  EXPECT_EQ(onlyColours("\x1B]unended\nnext"), "\nnext");
}

TEST(PaneColours, LeavesThePlainText) {
  EXPECT_EQ(withoutColours("a\x1B[1;31mb\x1B[0m\nc\x1B[m"), "ab\nc");
  EXPECT_EQ(withoutColours(""), "");
}

TEST(PaneColours, TheRestHasTheColoursThatHold) {
  const std::string text = "\x1B[1m\x1B[38;5;12;44mone\x1B[39mtwo";
  EXPECT_EQ(colouredAfter(text, text.find("one") + 1), "\x1B[1;38;5;12;44mne\x1B[39mtwo");
  EXPECT_EQ(colouredAfter(text, text.find("two")), "\x1B[1;44mtwo");
  EXPECT_EQ(colouredAfter("\x1B[91ma\x1B[0;4mb", 12), "\x1B[4mb");
}

TEST(PaneColours, AWholeTextEndsWithoutColour) {
  EXPECT_EQ(colouredEnd("\x1B[31mred", 100).text, "\x1B[31mred\x1B[0m");
  EXPECT_EQ(colouredEnd("\x1B[31mred\x1B[0m.", 100).text, "\x1B[31mred\x1B[0m.");
  EXPECT_EQ(colouredEnd("plain", 5).text, "plain");
}

TEST(PaneColours, ACutKeepsWithinTheLimitAndOutOfSequences) {
  const std::string text = "one \x1B[31mtwo\x1B[0m three \x1B[1;32mfour";
  for (int most = 1; most < 45; ++most) {
    const auto end = colouredEnd(text, most);
    EXPECT_LE(characterCount(end.text), most);
    const auto plain = withoutColours(end.text);
    EXPECT_EQ(plain.find('\x1B'), std::string::npos) << most << ": " << plain;
    EXPECT_TRUE(withoutColours(text).ends_with(plain)) << most << ": " << plain;
    EXPECT_EQ(end.totalCharacters > characterCount(end.text), plain != withoutColours(text)) << most;
  }
  EXPECT_EQ(colouredEnd(text, 20).text, "hree \x1B[1;32mfour\x1B[0m");
  EXPECT_EQ(colouredEnd(text, 14).text, "\x1B[1;32mour\x1B[0m");
  EXPECT_EQ(colouredEnd(text, 3).text, "our");
}

}  // namespace
}  // namespace velmora
