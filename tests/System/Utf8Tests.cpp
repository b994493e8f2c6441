#include <gtest/gtest.h>

#include "System/Utf8.h"

namespace velmora {
namespace {

TEST(Utf8, AcceptsEveryLengthOfSequence) {
  for (const std::string_view text : {"", "plain ascii text of more than eight bytes", "é", "한국어",
                                      "👩‍👩‍👧‍👦", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_TRUE(isValidUtf8(text));
    EXPECT_EQ(repairUtf8(text), text);
  }
  EXPECT_TRUE(isValidUtf8(std::string_view("a\0b", 3)));
}

TEST(Utf8, RefusesIllFormedBytes) {
  for (const std::string_view text :
       {"\xFF", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\x80",
        "\xE2\x82", "abcdefgh\xC3", "\xC3(", "\xF0\x9F\x98"}) {
    EXPECT_FALSE(isValidUtf8(text));
    EXPECT_TRUE(isValidUtf8(repairUtf8(text)));
  }
}

TEST(Utf8, ReplacesEachIllFormedRunOnce) {
  EXPECT_EQ(repairUtf8("a\xFF"
                       "b"),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(repairUtf8("\xF0\x9F\x98"), "\xEF\xBF\xBD");  // one truncated sequence
  EXPECT_EQ(repairUtf8("\xE2\x82"
                       "x"),
            "\xEF\xBF\xBD"
            "x");
  EXPECT_EQ(repairUtf8("\xC0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD");  // neither byte can start or go on
}

TEST(Utf8, LeavesOrdinaryTextOfEveryScriptPlain) {
  const std::string text = "main: vim ~/a.txt | 한국어 Ünï \xC2\xA0 👩‍👩‍👧‍👦 →";
  EXPECT_EQ(plainText(text), text);
  EXPECT_EQ(plainText(""), "");
}

TEST(Utf8, CutsBetweenCodePoints) {
  EXPECT_EQ(firstBytes("plain", 5), "plain");
  EXPECT_EQ(firstBytes("plain", 2), "pl");
  EXPECT_EQ(firstBytes("벨모라", 5), "벨");
  EXPECT_EQ(firstBytes("벨모라", 6), "벨모");
  EXPECT_EQ(firstBytes("벨모라", 2), "");
  EXPECT_EQ(firstBytes("\x80\x80\x80", 2), "") << "no code point begins in it";
}

TEST(Utf8, MakesEveryControlCharacterPlain) {
  EXPECT_EQ(plainText("\x1B[31mred\x1B]0;title\x07\x7F\r\n\tend"), "?[31mred?]0;title?????end");
  EXPECT_EQ(plainText(std::string_view("a\0b", 3)), "a?b");
  EXPECT_EQ(plainText("\xC2\x80\xC2\x9B"
                      "31m\xC2\x9F"),
            "??31m?");
  EXPECT_EQ(plainText("b\xC2"), "b\xEF\xBF\xBD");
}

}  // namespace
}  // namespace velmora
