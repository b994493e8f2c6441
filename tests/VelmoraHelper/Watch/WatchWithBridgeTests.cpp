// `velmora watch` beside a real bridge: what its keys change, and who may not press them.
#include <gmock/gmock.h>

#include "BridgeModels/Json/JsonReader.h"
#include "tests/BridgeHost/HeadlessFixture.h"
#include "tests/support/PtyProgram.h"

namespace velmora {
namespace {

using testing::eventually;
using ::testing::HasSubstr;

const std::string program = VELMORA_BIN "/velmora";

// Clang's thread sanitizer loses a signal that comes while the program sets what another signal does, as the
// terminal library does after every draw: fifteen lines of C show it. With it a signal waits until the
// program sleeps.
#ifdef __has_feature
constexpr bool losesSignals = __has_feature(thread_sanitizer);
#else
constexpr bool losesSignals = false;
#endif

bool isAsleep(pid_t process) {
  return testing::contentOf("/proc/" + std::to_string(process) + "/stat").find(") S") != std::string::npos;
}

class WatchWithBridge : public testing::HeadlessFixture {
 protected:
  std::string shown(const std::string& pane) { return tmux({"capture-pane", "-p", "-t", pane}); }
  void expectShown(const std::string& pane, const std::string& text) {
    EXPECT_TRUE(eventually([&] { return shown(pane).find(text) != std::string::npos; })) << text << "\n"
                                                                                         << shown(pane);
  }
  std::string startWatchPane() {
    return tmux({"split-window", "-d", "-P", "-F", "#{pane_id}", "-t", "main", program + " watch; exec cat"});
  }
  std::string sessionOf(const std::string& pane) {
    const auto tty = tmux({"display-message", "-p", "-t", pane, "#{pane_tty}"});
    const auto listed = payload(ToolName::listSessions);
    for (const auto& session : *at(listed, "sessions").array()) {
      if (textAt(session, "tty") == tty) return textAt(session, "sessionId");
    }
    return {};
  }
  std::optional<ErrorCode> refusalOf(ToolName tool, JSONObject arguments) {
    const auto response = call(tool, std::move(arguments));
    return response.ok ? std::nullopt : std::optional(response.error->code);
  }
  bool isPaused() const {
    return textAt(at(payload(ToolName::status), "status"), "mcpState") == wireName(MCPState::paused);
  }
};

TEST_F(WatchWithBridge, AgentsAreRefusedThePaneThatItRunsInAsLongAsItRuns) {
  startTmux();
  startHeadless();
  const auto pane = startWatchPane();
  expectShown(pane, "policy safe");
  const auto id = sessionOf(pane);
  EXPECT_EQ(refusalOf(ToolName::sendCommand, {{"sessionId", id}, {"command", "p"}}),
            ErrorCode::sessionNotAllowed);
  EXPECT_EQ(refusalOf(ToolName::sendKey, {{"sessionId", id}, {"key", "return"}}),
            ErrorCode::sessionNotAllowed);
  EXPECT_EQ(refusalOf(ToolName::readOutput, {{"sessionId", id}}), ErrorCode::sessionNotAllowed);
  expectShown(pane, "blocked");
  tmux({"send-keys", "-t", pane, "q"});
  EXPECT_TRUE(eventually([&] { return !refusalOf(ToolName::readOutput, {{"sessionId", id}}); }));
}

TEST_F(WatchWithBridge, PausesAndWithholdsByKeysAndShowsWhatAgentsType) {
  startTmux();
  startHeadless();
  const auto pane = startWatchPane();
  expectShown(pane, "policy safe");
  const auto id = sessionOf(tmux({"display-message", "-p", "-t", "main:0.0", "#{pane_id}"}));
  EXPECT_TRUE(eventually([&] {
    call(ToolName::sendCommand, {{"sessionId", id}, {"command", "echo seen"}});
    return shown(pane).find("echo seen") != std::string::npos;
  }));
  tmux({"send-keys", "-t", pane, "o"});
  expectShown(pane, "The session is readOnly.");
  EXPECT_EQ(refusalOf(ToolName::sendCommand, {{"sessionId", id}, {"command", "x"}}),
            ErrorCode::sessionNotAllowed);
  tmux({"send-keys", "-t", pane, "p"});
  expectShown(pane, "PAUSED");
  EXPECT_TRUE(isPaused());
  tmux({"send-keys", "-t", pane, "r"});
  expectShown(pane, "takes a terminal of your own");
  EXPECT_TRUE(isPaused()) << "inside tmux nobody resumes";
}

TEST_F(WatchWithBridge, GivesTheTerminalBackWhateverSignalEndsIt) {
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    testing::PtyProgram terminal({program, "watch"}, environment);
    terminal.shownWith("no bridge");
    EXPECT_TRUE(!losesSignals || eventually([&] { return isAsleep(terminal.process()); }));
    ::kill(terminal.process(), signal);
    EXPECT_NO_THROW(terminal.shownWith("\x1b[?1049l")) << signal;
    EXPECT_EQ(terminal.wait(), 128 + signal);
    EXPECT_TRUE(terminal.echoes()) << signal;
  }
}

TEST_F(WatchWithBridge, GoesOnAtASignalThatIsIgnored) {
  testing::PtyProgram terminal({"/bin/sh", "-c", "trap '' HUP INT QUIT TERM; exec '" + program + "' watch"},
                               environment);
  terminal.shownWith("no bridge");
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) ::kill(terminal.process(), signal);
  terminal.type("q");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(WatchWithBridge, ResumesWithTheWordOnATerminalOfTheUsersOwn) {
  startTmux();
  startHeadless();
  testing::ChildProgram({program, "pause"}, environment).wait();
  testing::PtyProgram terminal({program, "watch"}, environment);
  terminal.shownWith("PAUSED");
  terminal.type("r");
  const auto& screen = terminal.shownWith("Word: ");
  const std::string before = "type this word: ";
  terminal.type(screen.substr(screen.find(before) + before.size(), 4) + "\n");
  terminal.shownWith("Not paused.");
  EXPECT_FALSE(isPaused());
  terminal.type("q");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(WatchWithBridge, GoesToASessionInTheUsersTmuxAlsoFromAPopup) {
  startTmux();
  startHeadless();
  const auto other = tmux({"new-session", "-d", "-P", "-F", "#{pane_id}", "-s", "other"});
  testing::PtyProgram client({"/usr/bin/env", "tmux", "-S", tmuxSocket().string(), "attach", "-t", "main"},
                             environment);
  EXPECT_TRUE(eventually([&] { return tmux({"list-clients", "-F", "#{session_name}"}) == "main"; }));
  testing::ChildProgram popup({"tmux", "-S", tmuxSocket().string(), "display-popup", "-w", "95%", "-h", "90%",
                               "-E", program + " watch"},
                              environment);
  client.shownWith("policy safe");
  client.shownWith("other:");
  client.type("\t");  // from the requests to the sessions
  client.type("\x1B[F");
  client.type("g");
  EXPECT_TRUE(eventually([&] { return tmux({"list-clients", "-F", "#{session_name}"}) == "other"; }));
  client.type("q");
  EXPECT_EQ(popup.wait(), 0);
}

}  // namespace
}  // namespace velmora
