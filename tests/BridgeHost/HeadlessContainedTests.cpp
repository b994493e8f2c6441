// What runs in a window that keeps it apart, where the user wants that.
#include <gmock/gmock.h>

#include "tests/BridgeHost/HeadlessFixture.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::eventually;
using ::testing::HasSubstr;

class HeadlessContained : public testing::HeadlessFixture {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(run);
    std::filesystem::permissions(run, std::filesystem::perms::owner_all);
    environment["XDG_RUNTIME_DIR"] = run.string();
    writeSettings({.containNewWindows = true});
    startTmux();
  }

  void startContaining() {
    headless = launch();
    ASSERT_EQ(headless->readLine(), socket.string());
  }
  LocalControlResponse ask(ToolName tool, JSONObject arguments = {}) const {
    LocalControlClient client(socket);
    return call(client, tool, std::move(arguments));
  }
  /// Whether this machine lets a user contain a program at all: some containers and kernels do not.
  bool canContain() {
    testing::ChildProgram program({"bwrap", "--bind", "/", "/", "--dev", "/dev", "--proc", "/proc",
                                   "--unshare-pid", "--cap-drop", "ALL", "/bin/true"},
                                  environment);
    return program.wait() == 0;
  }
  void typeIn(const std::string& id, const std::string& command) {
    const auto sent = ask(ToolName::sendCommand, {{"sessionId", id}, {"command", command}});
    EXPECT_TRUE(sent.ok) << sent.error.value_or(StructuredError{}).message;
  }
  /// What a command there prints, of which the file that it makes last tells.
  std::string printed(const std::string& id, const std::string& command) {
    const auto file = directory / "printed";
    typeIn(id, "{ " + command + "; } >" + file.string() + ".new 2>&1; mv " + file.string() + ".new " +
                   file.string());
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(file); })) << command;
    auto text = contentOf(file);
    std::filesystem::remove(file);
    EXPECT_TRUE(eventually([&] { return !isBusy(id); })) << command;
    return text;
  }
  bool isBusy(const std::string& id) {
    const auto listed = ask(ToolName::listSessions, {{"includeBusy", true}});
    for (const auto& session : *at(*listed.data, "sessions").array()) {
      if (textAt(session, "sessionId") == id) return at(session, "busy") == JSONValue(true);
    }
    ADD_FAILURE() << "the session has ended";
    return false;
  }

  const std::filesystem::path run = directory / "run";
  const std::filesystem::path socket = run / "app.velmora.Velmora/control-v1.sock";
};

TEST_F(HeadlessContained, ReachesNoOtherWindowAndNothingOfTheBridge) {
  const auto server = tmux({"display-message", "-p", "#{pid}"});
  startContaining();
  const auto made = ask(ToolName::createSession);
  if (!canContain()) {
    ASSERT_FALSE(made.ok) << "a window that is not contained must not be opened instead";
    EXPECT_THAT(made.error->message, HasSubstr("New windows are to be contained"));
    EXPECT_EQ(tmux({"list-sessions", "-F", "#{session_name}"}), "main");
    return;
  }
  ASSERT_TRUE(made.ok) << made.error->message;
  const auto id = textAt(at(*made.data, "session"), "sessionId");
  EXPECT_EQ(at(at(*made.data, "session"), "busy"), JSONValue(false)) << "its prompt is seen from outside";

  EXPECT_THAT(printed(id, "tmux -S " + tmuxSocket().string() + " list-sessions"),
              HasSubstr("error connecting"));
  EXPECT_EQ(printed(id, "ls -A " + run.string() + " " + (directory / "data/Velmora").string()),
            (directory / "data/Velmora").string() + ":\n\n" + run.string() + ":\n");
  EXPECT_THAT(printed(id, "kill -0 " + server), HasSubstr("No such process"));
  EXPECT_EQ(printed(id, "ls /dev/pts; env | grep -Ec '^TMUX(_PANE)?='"), "ptmx\n0\n");
  EXPECT_EQ(printed(id, "pwd"), directory.path().string() + "\n") << "the user's files are there";
}

TEST_F(HeadlessContained, IsBusyWhileACommandRunsAndEndsWithItsShell) {
  if (!canContain()) return;  // the other test says what happens then
  startContaining();
  const auto made = ask(ToolName::createSession);
  ASSERT_TRUE(made.ok) << made.error->message;
  const auto id = textAt(at(*made.data, "session"), "sessionId");
  const auto pane = paneOf(textAt(at(*made.data, "session"), "tty"));
  typeIn(id, "sleep 1000");
  // From then on a key interrupts the command; before, it may meet the shell, which starts the command still.
  EXPECT_TRUE(eventually([&] {
    return tmux({"display-message", "-p", "-t", pane, "#{pane_current_command}"}) == "sleep";
  }));
  EXPECT_TRUE(isBusy(id));
  EXPECT_EQ(ask(ToolName::sendCommand, {{"sessionId", id}, {"command", "ls"}}).error->code,
            ErrorCode::sessionBusy);
  tmux({"send-keys", "-t", pane, "C-c"});
  EXPECT_TRUE(eventually([&] { return !isBusy(id); }));
  typeIn(id, "exit");
  EXPECT_TRUE(eventually([&] { return tmux({"list-sessions", "-F", "#{session_name}"}) == "main"; }));
}

}  // namespace
}  // namespace velmora
