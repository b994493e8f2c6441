#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/AppModel/Translation.h"
#include "tests/support/LocalTimeZone.h"

namespace velmora {
namespace {

class TranslationTest : public ::testing::Test {
 protected:
  ~TranslationTest() override { QLocale::setDefault(QLocale::system()); }
};

QString count(int number) {
  return QCoreApplication::translate("velmora::NowViewModel", "since %1, and %n more request(s)", nullptr,
                                     number);
}

TEST_F(TranslationTest, SpeaksUntilItEnds) {
  const auto before = QCoreApplication::translate("AppSection", "Sessions");
  {
    const auto korean = Translation::installed(Language::korean);
    EXPECT_EQ(QCoreApplication::translate("AppSection", "Sessions"), "세션");
  }
  EXPECT_EQ(QCoreApplication::translate("AppSection", "Sessions"), before);
}

TEST_F(TranslationTest, AnswersInItsOwnLanguageWhateverTheApplicationSpeaks) {
  const auto english = Translation::installed(Language::english);
  EXPECT_EQ(Translation(Language::korean).of("AppSection", "Sessions"), "세션");
  EXPECT_EQ(Translation(Language::english).of("AppSection", "Sessions"), "Sessions");
  EXPECT_EQ(Translation(Language::korean).of("AppSection", "no such text"), "no such text");
}

TEST_F(TranslationTest, CountsAsTheLanguageDoes) {
  const auto english = Translation::installed(Language::english);
  EXPECT_EQ(count(1), "since %1, and 1 more request");
  EXPECT_EQ(count(2), "since %1, and 2 more requests");
  const auto korean = Translation::installed(Language::korean);
  EXPECT_EQ(count(1).contains("(s)"), false);
  EXPECT_NE(count(2), "since %1, and 2 more requests");
}

TEST_F(TranslationTest, WritesTimesAsTheLanguageDoes) {
  const LocalTimeZone zone("UTC");
  const auto now = *Date::parseIso8601("2026-11-21T14:05:22Z");
  const auto before = *Date::parseIso8601("2026-11-20T09:05:07Z");
  const auto korean = Translation::installed(Language::korean);
  EXPECT_EQ(timeText(now, now), "오후 2:05:22");
  EXPECT_EQ(timeText(now, now, TimeDetail::minutes), "오후 2:05");
  EXPECT_EQ(timeText(before, now), "2026. 11. 20. 오전 9:05:07");
}

}  // namespace
}  // namespace velmora
