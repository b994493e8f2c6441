#include <gtest/gtest.h>

#include "VelmoraHelper/Commands/PlainText.h"

namespace velmora {
namespace {

TEST(PlainText, LeavesOrdinaryTextOfEveryScriptAlone) {
  const std::string text = "main: vim ~/a.txt | 한국어 Ünï \xC2\xA0 👩‍👩‍👧‍👦 →";
  EXPECT_EQ(plainText(text), text);
  EXPECT_EQ(plainText(""), "");
}

TEST(PlainText, ReplacesEveryControlCharacter) {
  EXPECT_EQ(plainText("\x1B[31mred\x1B]0;title\x07\x7F\r\n\tend"), "?[31mred?]0;title?????end");
  EXPECT_EQ(plainText(std::string_view("a\0b", 3)), "a?b");
  EXPECT_EQ(plainText("\xC2\x80\xC2\x9B"
                      "31m\xC2\x9F"),
            "??31m?");
}

TEST(PlainText, RepairsWhatIsNotUtf8) {
  EXPECT_EQ(plainText("a\xFF"
                      "b\xC2"),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
}

}  // namespace
}  // namespace velmora
