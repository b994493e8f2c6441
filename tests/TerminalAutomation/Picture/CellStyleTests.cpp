#include <gtest/gtest.h>

#include <string>

#include "TerminalAutomation/Tmux/Picture/CellStyle.h"

namespace velmora {
namespace {

CellStyle after(std::string_view parameters, CellStyle style = {}) {
  applySgr(parameters, style);
  return style;
}

TEST(CellStyle, ReadsTheSixteenColours) {
  EXPECT_EQ(after("31").foreground, CellColour::palette(1));
  EXPECT_EQ(after("97").foreground, CellColour::palette(15));
  EXPECT_EQ(after("44").background, CellColour::palette(4));
  EXPECT_EQ(after("100").background, CellColour::palette(8));
  EXPECT_EQ(after("31;39").foreground, CellColour{});
  EXPECT_EQ(after("44;49").background, CellColour{});
}

TEST(CellStyle, ReadsLongColoursInEitherSpelling) {
  for (const auto* text : {"38;5;196", "38:5:196"})
    EXPECT_EQ(after(text).foreground, CellColour::palette(196)) << text;
  for (const auto* text : {"48;2;1;2;3", "48:2:1:2:3", "48:2::1:2:3"}) {
    EXPECT_EQ(after(text).background, CellColour::rgb(1, 2, 3)) << text;
  }
  EXPECT_EQ(after("58:2::9:8:7").underlineColour, CellColour::rgb(9, 8, 7));
  EXPECT_EQ(after("58;5;3").underlineColour, CellColour::palette(3));
  EXPECT_EQ(after("58;5;3;59").underlineColour, CellColour{});
}

TEST(CellStyle, GoesOnBehindALongColour) {
  const auto style = after("38;5;196;1;48;2;1;2;3;3");
  EXPECT_EQ(style.foreground, CellColour::palette(196));
  EXPECT_EQ(style.background, CellColour::rgb(1, 2, 3));
  EXPECT_TRUE(style.bold);
  EXPECT_TRUE(style.italic);
}

TEST(CellStyle, SwitchesEachAttributeOnAndOff) {
  EXPECT_TRUE(after("1").bold);
  EXPECT_TRUE(after("2").dim);
  EXPECT_FALSE(after("1;2;22").bold);
  EXPECT_FALSE(after("1;2;22").dim);
  EXPECT_TRUE(after("3").italic);
  EXPECT_FALSE(after("3;23").italic);
  EXPECT_TRUE(after("7").reverse);
  EXPECT_FALSE(after("7;27").reverse);
  EXPECT_TRUE(after("8").hidden);
  EXPECT_FALSE(after("8;28").hidden);
  EXPECT_TRUE(after("9").strike);
  EXPECT_FALSE(after("9;29").strike);
  EXPECT_TRUE(after("53").overline);
  EXPECT_FALSE(after("53;55").overline);
}

TEST(CellStyle, ReadsEveryUnderline) {
  EXPECT_EQ(after("4").underline, Underline::single);
  EXPECT_EQ(after("4:0", after("4")).underline, Underline::none);
  EXPECT_EQ(after("4:2").underline, Underline::double_);
  EXPECT_EQ(after("21").underline, Underline::double_);
  EXPECT_EQ(after("4:3").underline, Underline::curly);
  EXPECT_EQ(after("4:4").underline, Underline::dotted);
  EXPECT_EQ(after("4:5").underline, Underline::dashed);
  EXPECT_EQ(after("4:3;24").underline, Underline::none);
}

TEST(CellStyle, ResetsAtZeroAndAtNothing) {
  const auto loud = after("1;3;4;7;31;44");
  EXPECT_EQ(after("0", loud), CellStyle{});
  EXPECT_EQ(after("", loud), CellStyle{});
  EXPECT_EQ(after(";1", loud), after("1"));
}

TEST(CellStyle, IgnoresWhatItDoesNotKnowOrCannotBelieve) {
  for (const auto* text : {"5", "6", "999", "99999999999999999999", "38", "38;5", "38;5;256", "38;2;1;2",
                           "38;2;300;0;0", "48:2:1", "4:9", "58"}) {
    EXPECT_EQ(after(text), CellStyle{}) << text;
  }
}

}  // namespace
}  // namespace velmora
