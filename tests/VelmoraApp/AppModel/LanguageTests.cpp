#include <gtest/gtest.h>

#include "VelmoraApp/AppModel/Language.h"

namespace velmora {
namespace {

TEST(Language, IsKoreanForWhomKoreanComesFirst) {
  EXPECT_EQ(languageFor({"ko-KR"}), Language::korean);
  EXPECT_EQ(languageFor({"ko"}), Language::korean);
  EXPECT_EQ(languageFor({"ko-Kore-KR", "en-US"}), Language::korean);
}

TEST(Language, IsEnglishForEverybodyElse) {
  EXPECT_EQ(languageFor({"en-US"}), Language::english);
  EXPECT_EQ(languageFor({"en-US", "ko-KR"}), Language::english);
  EXPECT_EQ(languageFor({"de-DE", "ko-KR"}), Language::english);
  EXPECT_EQ(languageFor({"C"}), Language::english);
  EXPECT_EQ(languageFor({}), Language::english);
}

TEST(Language, IsFoundByItsCodeOnly) {
  EXPECT_EQ(languageOf("ko"), Language::korean);
  EXPECT_EQ(languageOf("en"), Language::english);
  for (const auto* other : {"", "system", "de", "ko-KR", "korean"})
    EXPECT_EQ(languageOf(other), std::nullopt);
}

}  // namespace
}  // namespace velmora
