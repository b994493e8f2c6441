#include <gtest/gtest.h>

#include "VelmoraApp/Platform/UserDefaults.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

TEST(IniFileDefaults, AnswerWhatIsAbsentAndKeepWhatIsSet) {
  const TemporaryDirectory directory;
  const auto file = QString::fromStdString((directory / "some.conf").string());
  {
    IniFileDefaults defaults(file);
    EXPECT_FALSE(defaults.boolean("onboardingCompleted", false));
    EXPECT_TRUE(defaults.boolean("menuBarEnabled", true));
    EXPECT_EQ(defaults.text("sessionPolicy"), "");
    defaults.set("onboardingCompleted", true);
    defaults.set("menuBarEnabled", false);
    defaults.set("sessionPolicy", QString("selective"));
  }
  const IniFileDefaults again(file);
  EXPECT_TRUE(again.boolean("onboardingCompleted", false));
  EXPECT_FALSE(again.boolean("menuBarEnabled", true));
  EXPECT_EQ(again.text("sessionPolicy"), "selective");
}

TEST(IniFileDefaults, TakeOnlyTheWordsThatTheyWriteForABoolean) {
  const TemporaryDirectory directory;
  for (const std::string word : {"garbage", "1", "yes", "TRUE", ""}) {
    const auto file = directory / (word + ".conf");
    testing::writeFile(file, "[General]\nonboardingCompleted=" + word + "\n");
    const IniFileDefaults defaults(QString::fromStdString(file.string()));
    EXPECT_FALSE(defaults.boolean("onboardingCompleted", false)) << word;
    EXPECT_TRUE(defaults.boolean("onboardingCompleted", true)) << word;
  }
}

TEST(IniFileDefaults, SayWhatCouldNotBeWritten) {
  const TemporaryDirectory directory;
  testing::writeFile(directory / "config", "a file where the folder should be");
  IniFileDefaults defaults(QString::fromStdString((directory / "config/some.conf").string()));
  defaults.set("menuBarEnabled", false);  // nobody hears of it
  QString heard;
  defaults.whenNotKept([&](const QString& file) { heard = file; });
  defaults.set("menuBarEnabled", true);
  EXPECT_TRUE(heard.endsWith("config/some.conf")) << heard.toStdString();
}

}  // namespace
}  // namespace velmora
