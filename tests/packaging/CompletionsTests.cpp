// What each shell offers after the words of a command line, beside what the program really takes.
#include "tests/packaging/CommandNames.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::Names;
using testing::outputOf;

const std::string folder = VELMORA_PACKAGING "/completions";

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const auto& word : words) text += word + " ";
  return text;
}

// Each of these returns what the shell offers after the finished `words`, the first of which is "velmora".

Names offeredByBash(const std::vector<std::string>& words) {
  return testing::linesOf(
      outputOf({"bash", "--norc", "-c",
                "source " + folder + "/velmora.bash\n[[ $(complete -p velmora) == *_velmora* ]]\n" +
                    "COMP_WORDS=(" + joined(words) + "'')\nCOMP_CWORD=" + std::to_string(words.size()) +
                    "\n_velmora\nprintf '%s\\n' \"${COMPREPLY[@]}\""}));
}

Names offeredByZsh(const std::vector<std::string>& words) {
  // Only a line editor can show candidates; here they are printed in its stead.
  return testing::linesOf(
      outputOf({"zsh", "-f", "-c",
                "fpath=(" + folder + " $fpath)\nautoload -Uz compinit && compinit -u -D\n" +
                    "_describe() { print -rl -- ${${(P)argv[-1]}%%:*} }\n" + "words=(" + joined(words) +
                    "'')\nCURRENT=$#words\n" + "$_comps[velmora]"}));
}

Names offeredByFish(const std::vector<std::string>& words) {
  const TemporaryDirectory home;
  const auto line = joined(words);
  const auto output = outputOf(
      {"fish", "--no-config", "-c",
       "source " + folder + "/velmora.fish\ncomplete -C '" + line + "'\ncomplete -C '" + line + "-'"},
      {{"XDG_CONFIG_HOME", home.path().string()}, {"XDG_DATA_HOME", home.path().string()}});
  auto names = testing::matchesIn("\n" + output, "\n([^\t\n]+)");
  names.erase("-h");
  return names;
}

class Completions : public ::testing::TestWithParam<Names (*)(const std::vector<std::string>&)> {
 protected:
  static Names offered(const std::vector<std::string>& words) { return GetParam()(words); }
};

TEST_P(Completions, OfferEveryCommandAndOption) {
  EXPECT_EQ(offered({"velmora"}), testing::together(testing::commandNames(), testing::optionNames()));
}

TEST_P(Completions, OfferEveryToolAfterCall) {
  EXPECT_EQ(offered({"velmora", "call"}),
            testing::together(testing::toolNames(), testing::optionNames("call")));
}

TEST_P(Completions, OfferEveryClientAfterConfig) {
  EXPECT_EQ(offered({"velmora", "config"}),
            testing::together(testing::clientNames(), testing::optionNames("config")));
}

TEST_P(Completions, OfferTheOptionsOfCommandsWithoutArguments) {
  EXPECT_EQ(offered({"velmora", "status"}), testing::optionNames("status"));
  EXPECT_EQ(offered({"velmora", "doctor"}), testing::optionNames("doctor"));
}

TEST_P(Completions, OfferWhatTheUsersCommandsTake) {
  const auto after = [](const char* command) { return offered({"velmora", command}); };
  EXPECT_EQ(after("sessions"), testing::optionNames("sessions"));
  EXPECT_EQ(after("history"), testing::optionNames("history"));
  EXPECT_EQ(after("watch"), testing::optionNames("watch"));
  EXPECT_EQ(after("pause"), testing::optionNames("pause"));
  EXPECT_EQ(after("resume"), testing::optionNames("resume"));
  EXPECT_EQ(after("policy"), testing::together({"safe", "selective"}, testing::optionNames("policy")));
  EXPECT_EQ(after("busy"), testing::together({"on", "own", "off"}, testing::optionNames("busy")));
  EXPECT_EQ(after("shell-integration"),
            testing::together({"bash", "zsh", "fish"}, testing::optionNames("shell-integration")));
  const Names permissions{"managed", "allowed", "readOnly", "blocked"};
  for (const auto& name : permissions)
    EXPECT_EQ(offered({"velmora", "permit", "%5"}).count(name), 1u) << name;
}

TEST_P(Completions, OfferClientsAndOptionsOfConfigInAnyOrder) {
  const auto afterOption = offered({"velmora", "config", "--apply"});
  for (const auto& client : testing::clientNames()) EXPECT_EQ(afterOption.count(client), 1u) << client;
  EXPECT_EQ(offered({"velmora", "config", "--apply", "cursor"}).count("--dry-run"), 1u);
  EXPECT_EQ(offered({"velmora", "config", "--ssh"}).count("cursor"), 0u);
  EXPECT_EQ(offered({"velmora", "config", "--ssh", "host"}).count("cursor"), 1u);
}

TEST_P(Completions, OfferOptionsOfHistoryInAnyOrderAndToolsWhereOneIsAskedFor) {
  EXPECT_EQ(offered({"velmora", "history", "--since", "1h"}).count("--tool"), 1u);
  EXPECT_EQ(offered({"velmora", "history", "--since"}).count("--tool"), 0u);
  const auto tools = offered({"velmora", "history", "--since", "1h", "--tool"});
  for (const auto& tool : testing::toolNames()) EXPECT_EQ(tools.count(tool), 1u) << tool;
  EXPECT_EQ(tools.count("--json"), 0u);
}

TEST_P(Completions, OfferStandardInputAfterATool) {
  EXPECT_EQ(offered({"velmora", "call", "terminal_send_key"}).count("-"), 1u);
  EXPECT_EQ(offered({"velmora", "config", "cursor"}).count("-"), 0u);
}

INSTANTIATE_TEST_SUITE_P(Bash, Completions, ::testing::Values(&offeredByBash));
INSTANTIATE_TEST_SUITE_P(Zsh, Completions, ::testing::Values(&offeredByZsh));
INSTANTIATE_TEST_SUITE_P(Fish, Completions, ::testing::Values(&offeredByFish));

TEST(BashCompletion, NarrowsTheCandidatesToWhatIsTyped) {
  EXPECT_EQ(outputOf({"bash", "--norc", "-c",
                      "source " + folder +
                          "/velmora.bash\nCOMP_WORDS=(velmora config cl)\nCOMP_CWORD=2\n_velmora\necho "
                          "${COMPREPLY[@]}"}),
            "claude-desktop claude-code\n");
}

}  // namespace
}  // namespace velmora
