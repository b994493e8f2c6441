// Who may give agents more: the real programs, a tmux server of the test's own, and a terminal that is no
// pane.
#include <gmock/gmock.h>

#include "BridgeModels/Json/JsonReader.h"
#include "tests/BridgeHost/HeadlessFixture.h"
#include "tests/support/PtyProgram.h"

namespace velmora {
namespace {

using testing::eventually;
using ::testing::HasSubstr;
using testing::PtyProgram;

const std::string program = VELMORA_BIN "/velmora";

class LooseningWithBridge : public testing::HeadlessFixture {
 protected:
  int run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), program);
    testing::ChildProgram child(std::move(arguments), environment);
    child.closeInput();
    return child.wait();
  }
  bool isPaused() const {
    return textAt(at(payload(ToolName::status), "status"), "mcpState") == wireName(MCPState::paused);
  }
  void startPaused() {
    startTmux();
    startHeadless();
    ASSERT_EQ(run({"pause"}), 0);
  }

  /// Types a line into the pane and waits until the program in it has said how it ended.
  std::string outcomeIn(const std::string& pane, const std::string& line) {
    tmux({"send-keys", "-t", pane, line + "; echo ended-$?", "Enter"});
    std::string screen;
    EXPECT_TRUE(eventually([&] {
      screen = tmux({"capture-pane", "-p", "-J", "-t", pane});
      return screen.find("\nended-") != std::string::npos;
    })) << screen;
    return screen;
  }
  void expectRefusedIn(const std::string& pane, const std::string& line) {
    const auto screen = outcomeIn(pane, line);
    EXPECT_THAT(screen, HasSubstr("ended-1")) << line;
    EXPECT_THAT(screen, HasSubstr("takes a terminal of your own")) << line;
    EXPECT_TRUE(isPaused()) << line;
    tmux({"send-keys", "-t", pane, "clear", "Enter"});
    EXPECT_TRUE(eventually([&] {
      return tmux({"capture-pane", "-p", "-t", pane}).find("ended") == std::string::npos;
    }));
  }

  /// The word that the bridge shows on the terminal.
  static std::string wordOn(PtyProgram& terminal) {
    const auto& shown = terminal.shownWith("Word: ");
    const std::string before = "type this word: ";
    return shown.substr(shown.find(before) + before.size(), 4);
  }
  int withWord(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), program);
    PtyProgram terminal(std::move(arguments), environment);
    terminal.type(wordOn(terminal) + "\n");
    return terminal.wait();
  }
};

TEST_F(LooseningWithBridge, AUserOnATerminalOfTheirOwnResumesWithTheWordShownThere) {
  startPaused();
  EXPECT_EQ(withWord({"resume"}), 0);
  EXPECT_FALSE(isPaused());
  EXPECT_FALSE(std::filesystem::exists(directory / "data/Velmora/paused"));
}

TEST_F(LooseningWithBridge, AUserGivesBackWhatWasWithheld) {
  startPaused();
  const auto pane = tmux({"display-message", "-p", "-t", "main", "#{pane_id}"});
  for (const auto& change : std::vector<std::vector<std::string>>{
           {"permit", pane, "blocked"}, {"policy", "selective"}, {"busy", "off"}})
    EXPECT_EQ(run(change), 0);
  EXPECT_EQ(withWord({"permit", pane, "managed"}), 0);
  EXPECT_EQ(withWord({"policy", "safe"}), 0);
  EXPECT_EQ(withWord({"busy", "on"}), 0);
  const auto session = at(payload(ToolName::listSessions), "sessions").array()->front();
  EXPECT_EQ(textAt(session, "permission"), "managed");
}

TEST_F(LooseningWithBridge, AWrongWordChangesNothing) {
  startPaused();
  PtyProgram terminal({program, "resume"}, environment);
  wordOn(terminal);
  terminal.type("aaaa\n");
  EXPECT_THAT(terminal.shownWith("SESSION_NOT_ALLOWED"), HasSubstr("That is not the word"));
  EXPECT_EQ(terminal.wait(), 1);
  EXPECT_TRUE(isPaused());
}

TEST_F(LooseningWithBridge, ACommandWithoutATerminalIsRefused) {
  startPaused();
  EXPECT_EQ(run({"resume"}), 1);
  EXPECT_TRUE(isPaused());
}

TEST_F(LooseningWithBridge, AnAgentsPaneIsRefusedHoweverItTries) {
  startPaused();
  const auto pane = tmux({"display-message", "-p", "-t", "main", "#{pane_id}"});
  expectRefusedIn(pane, program + " resume");
  expectRefusedIn(pane, "setsid -w " + program + " resume");
  expectRefusedIn(pane, "script -qec '" + program + " resume' /dev/null");
  expectRefusedIn(pane, "env -u TMUX -u TMUX_PANE " + program + " resume </dev/null");
}

TEST_F(LooseningWithBridge, AnAgentsPaneIsRefusedThroughOtherPanes) {
  startPaused();
  const auto pane = tmux({"display-message", "-p", "-t", "main", "#{pane_id}"});
  const auto other = tmux({"split-window", "-d", "-P", "-F", "#{pane_id}", "-t", pane});
  tmux({"send-keys", "-t", pane, "tmux send-keys -t " + other + " 'echo typed-$((40+2))' Enter", "Enter"});
  EXPECT_TRUE(eventually([&] {
    return tmux({"capture-pane", "-p", "-t", other}).find("typed-42") != std::string::npos;
  }));
  expectRefusedIn(other, program + " resume");
  // A server that the bridge does not drive: its panes descend from no pane, but from a tmux.
  const auto screen = outcomeIn(pane, "tmux -L own -f /dev/null new-session -d '" + program + " resume >" +
                                          (directory / "own").string() + " 2>&1; echo $? >>" +
                                          (directory / "own").string() + "'");
  EXPECT_THAT(screen, HasSubstr("ended-0"));
  std::string outcome;
  EXPECT_TRUE(eventually([&] {
    outcome = testing::contentOf(directory / "own");
    return outcome.ends_with("\n1\n");
  })) << outcome;
  EXPECT_THAT(outcome, HasSubstr("inside tmux"));
  EXPECT_TRUE(isPaused());
}

}  // namespace
}  // namespace velmora
