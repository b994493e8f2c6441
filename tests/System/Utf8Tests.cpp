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

}  // namespace
}  // namespace velmora
