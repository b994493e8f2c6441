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

TEST_F(SettingsCheck, SaysWhereAgentsMayTypeIntoProgramsThatRun) {
  const auto findingOf = [&](const std::string& settings) {
    return checkOf(R"({"schemaVersion":1,"settings":{)" + settings + "}}").finding;
  };
  EXPECT_THAT(findingOf(R"("allowBusySessionInput":true,"allowOwnBusySessionInput":true)"),
              EndsWith("; session policy safe, busy input on"));
  EXPECT_THAT(findingOf(R"("allowOwnBusySessionInput":true)"),
              EndsWith("; session policy safe, busy input in agents' windows"));
  EXPECT_THAT(findingOf(R"("allowOwnBusySessionInput":false)"), EndsWith("; session policy safe"));
  EXPECT_THAT(findingOf(R"("containNewWindows":true)"),
              EndsWith("; session policy safe, new windows in bubblewrap"));
}

TEST_F(SettingsCheck, SaysWhatTheSettingsComeToForAgents) {
  const auto limits = [this](const std::string& settings) {
    testing::writeFile(file, R"({"schemaVersion":1,"settings":)" + settings + "}");
    return checkLimits(file).finding;
  };
  EXPECT_EQ(limits("{}"), "agents may type into every session, but not into busy ones; no history is kept");
  EXPECT_EQ(
      limits(R"({"sessionPolicy":"selective","allowBusySessionInput":true})"),
      "agents may type into windows that they opened, and read the others, busy ones too; no history is kept");
  EXPECT_EQ(
      limits(R"({"allowOwnBusySessionInput":true,"persistentHistoryEnabled":true,"retentionDays":1})"),
      "agents may type into every session, busy ones only if an agent opened them; history is kept for 1 "
      "day, and until the bridge ends");
  EXPECT_EQ(limits(R"({"persistentHistoryEnabled":true,"deleteOnAppExit":false})"),
            "agents may type into every session, but not into busy ones; history is kept for 7 days");
  EXPECT_EQ(limits("["), limits("{}"));
}

TEST_F(SettingsCheck, NamesTheTmuxSocketAndFindsOneThatIsNoPath) {
  EXPECT_EQ(checkOf(R"({"schemaVersion":1,"settings":{"tmuxSocket":"/t/work"}})").finding,
            file.string() + "; session policy safe, tmux socket /t/work");
  const auto check = checkOf(R"({"schemaVersion":1,"settings":{"tmuxSocket":"work"}})");
  EXPECT_FALSE(check.ok);
  EXPECT_THAT(check.finding, HasSubstr("tmuxSocket in " + file.string() + " is no absolute path"));
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
