// The manual pages, as `man` shows them.
#include <gmock/gmock.h>

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

TEST(Manuals, OfTheApplicationSayWhatItKeeps) {
  const auto page = shown("velmora-app.1");
  for (const auto* word : {"velmora-app", "XDG_CONFIG_HOME", "settings.json", "Velmora.conf", "autostart"}) {
    EXPECT_THAT(page, HasSubstr(word));
  }
}

TEST(Manuals, FitA80ColumnTerminal) {
  for (const auto* page : {"velmora.1", "velmora-headless.1", "velmora-app.1"}) {
    for (const auto& line : testing::linesOf(shown(page))) EXPECT_LE(line.size(), 80u) << line;
  }
}

}  // namespace
}  // namespace velmora
