#include <gmock/gmock.h>

#include "VelmoraHelper/Commands/SettingsCheck.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

class SettingsCheck : public ::testing::Test {
 protected:
  Check checkOf(const std::string& text) const {
    testing::writeFile(file, text);
    return checkSettings(file);
  }

  TemporaryDirectory directory;
  const std::filesystem::path file = directory / "settings.json";
};

TEST_F(SettingsCheck, NamesThePolicyThatTheFileLeadsTo) {
  EXPECT_EQ(checkSettings({}).finding, "none stored; session policy safe");
  EXPECT_EQ(checkSettings(file).finding, "none stored; session policy safe");
  const auto check = checkOf(R"({"schemaVersion":1,"settings":{"sessionPolicy":"selective"}})");
  EXPECT_TRUE(check.ok);
  EXPECT_EQ(check.finding, file.string() + "; session policy selective");
}

TEST_F(SettingsCheck, FindsAKeyThatNoSettingHas) {
  const auto check = checkOf(R"({"schemaVersion":1,"settings":{"sesionPolicy":"selective"}})");
  EXPECT_FALSE(check.ok);
  EXPECT_EQ(check.finding,
            "no setting is called \"sesionPolicy\" in " + file.string() + "; session policy safe holds");
  EXPECT_THAT(check.nextStep, HasSubstr("Correct its name"));
}

TEST_F(SettingsCheck, FindsAFileThatCannotBeRead) {
  for (const auto* text : {"", "{", "[]", "{}", R"({"settings":{"sessionPolicy":"open"}})"}) {
    EXPECT_FALSE(checkOf(text).ok) << text;
    EXPECT_NE(checkOf(text).nextStep, "") << text;
  }
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  EXPECT_THAT(checkSettings(file).finding, EndsWith(" cannot be read"));
}

}  // namespace
}  // namespace velmora
