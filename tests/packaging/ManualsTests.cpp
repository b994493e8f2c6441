// The manual pages, as `man` shows them.
#include <gmock/gmock.h>

#include <boost/json/serialize.hpp>
#include <boost/mp11/algorithm.hpp>

#include "BridgeModels/Json/JsonDocument.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "tests/packaging/CommandNames.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

// Anything that the formatter warns of would be printed to the error stream, which must stay empty.
std::string shown(const std::string& page) {
  return testing::outputOf({"man", "--warnings=w", "-E", "ascii", "-l", VELMORA_PACKAGING "/man/" + page},
                           {{"MANWIDTH", "80"}});
}

TEST(Manuals, OfTheHelperNameEverythingThatCanBeTyped) {
  const auto page = shown("velmora.1");
  for (const auto& command : testing::commandNames()) {
    EXPECT_THAT(page, HasSubstr("velmora " + command)) << "in the synopsis";
    EXPECT_THAT(page, HasSubstr("\n       " + command)) << "under the commands";
    for (const auto& option : testing::optionNames(command)) EXPECT_THAT(page, HasSubstr(option));
  }
  for (const auto& option : testing::optionNames()) EXPECT_THAT(page, HasSubstr(option));
  for (const auto& tool : testing::toolNames()) EXPECT_THAT(page, HasSubstr("\n       " + tool + " "));
  for (const auto& client : testing::clientNames()) EXPECT_THAT(page, HasSubstr("\n       " + client + " "));
}

TEST(Manuals, OfTheBridgeSayWhatItPrintsAndReads) {
  const auto page = shown("velmora-headless.1");
  for (const auto* word : {"velmora-headless", "SIGTERM", "XDG_DATA_HOME", "TMUX_TMPDIR", "settings.json"}) {
    EXPECT_THAT(page, HasSubstr(word));
  }
}

// Every setting with its default and, for a number, its range.
TEST(Manuals, OfTheSettingsNameEachWithItsDefault) {
  const auto page = shown("velmora-settings.5");
  const auto defaults = parseJson(encodeJson(PrivacyRetentionSettings{})).as_object();
  boost::mp11::mp_for_each<MembersOf<PrivacyRetentionSettings>>([&](auto member) {
    auto heading = std::string("\n       ") + member.name + " (default: ";
    if (const auto* value = defaults.if_contains(member.name))
      heading += value->is_string() ? std::string(value->as_string()) : serialize(*value);
    EXPECT_THAT(page, HasSubstr(heading));
  });
  const auto expectRange = [&](const std::string& name, IntegerRange range) {
    const auto limits = std::to_string(range.minimum) + " to " + std::to_string(range.maximum);
    EXPECT_EQ(testing::matchesIn(page, "(" + name + " \\(default: [0-9]+; " + limits + "\\))").size(), 1u)
        << name;
  };
  expectRange("retentionDays", PrivacyRetentionSettings::retentionDaysRange);
  expectRange("maximumRecordCount", PrivacyRetentionSettings::maximumRecordCountRange);
  expectRange("outputPreviewMaxCharacters", PrivacyRetentionSettings::outputPreviewMaxCharactersRange);
}

TEST(Manuals, OfTheApplicationSayWhatItKeeps) {
  const auto page = shown("velmora-app.1");
  for (const auto* word : {"velmora-app", "XDG_CONFIG_HOME", "settings.json", "Velmora.conf", "autostart"}) {
    EXPECT_THAT(page, HasSubstr(word));
  }
}

TEST(Manuals, FitA80ColumnTerminal) {
  for (const auto* page : {"velmora.1", "velmora-headless.1", "velmora-app.1", "velmora-settings.5"}) {
    for (const auto& line : testing::linesOf(shown(page))) EXPECT_LE(line.size(), 80u) << line;
  }
}

}  // namespace
}  // namespace velmora
