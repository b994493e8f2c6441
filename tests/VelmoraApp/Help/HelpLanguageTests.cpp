#include <gtest/gtest.h>

#include "VelmoraApp/Help/HelpLanguage.h"

namespace velmora {
namespace {

TEST(HelpLanguage, IsKoreanForWhomKoreanComesFirst) {
  EXPECT_EQ(helpLanguageFor({"ko-KR"}), HelpLanguage::korean);
  EXPECT_EQ(helpLanguageFor({"ko"}), HelpLanguage::korean);
  EXPECT_EQ(helpLanguageFor({"ko-Kore-KR", "en-US"}), HelpLanguage::korean);
}

TEST(HelpLanguage, IsEnglishForEverybodyElse) {
  EXPECT_EQ(helpLanguageFor({"en-US"}), HelpLanguage::english);
  EXPECT_EQ(helpLanguageFor({"en-US", "ko-KR"}), HelpLanguage::english);
  EXPECT_EQ(helpLanguageFor({"de-DE", "ko-KR"}), HelpLanguage::english);
  EXPECT_EQ(helpLanguageFor({"C"}), HelpLanguage::english);
  EXPECT_EQ(helpLanguageFor({}), HelpLanguage::english);
}

}  // namespace
}  // namespace velmora
