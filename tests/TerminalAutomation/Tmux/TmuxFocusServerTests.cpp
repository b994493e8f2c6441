#include "tests/TerminalAutomation/Tmux/AttachedClient.h"
#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::AttachedClient;
using testing::contentOf;
using testing::eventually;
using testing::structuredError;
using testing::writeFile;

class TmuxFocus : public testing::PrivateTmux {
 protected:
  /// What the client shows: "session window pane".
  std::string shownBy(const AttachedClient& client) {
    client.drain();
    const std::string clients =
        tmux({"list-clients", "-F", "#{client_pid} #{session_name} #{window_id} #{pane_id}"});
    const std::size_t start = clients.find(client.process() + " ");
    if (start == std::string::npos) return "";
    return clients.substr(start + client.process().size() + 1,
                          clients.find('\n', start) - start - client.process().size() - 1);
  }
  void focus(const std::string& pane) {
    const auto tab = tabOf(pane);
    executor().focus(tab.tty, tab.windowId).get();
  }
};

TEST_F(TmuxFocus, ShowsThePaneToTheAttachedClient) {
  startServer();
  tmux({"new-session", "-d", "-s", "other", "-x", "80", "-y", "24"});
  tmux({"split-window", "-d", "-t", "other"});
  tmux({"new-window", "-d", "-t", "main:"});
  const AttachedClient client(transport_->socketPath(), "main");
  ASSERT_TRUE(eventually([&] { return shownBy(client) == "main @0 %0"; })) << shownBy(client);
  focus("%2");
  EXPECT_EQ(shownBy(client), "other @1 %2");
  focus("%3");
  EXPECT_EQ(shownBy(client), "main @2 %3");
  EXPECT_EQ(tabOf("%3").windowIndex, 1);
}

TEST_F(TmuxFocus, ChoosesTheClientWithTheLatestKey) {
  startServer();
  tmux({"new-session", "-d", "-s", "other", "-x", "80", "-y", "24"});
  tmux({"new-session", "-d", "-s", "third", "-x", "80", "-y", "24"});
  const AttachedClient first(transport_->socketPath(), "main");
  const AttachedClient second(transport_->socketPath(), "other");
  ASSERT_TRUE(eventually([&] { return shownBy(first) == "main @0 %0" && shownBy(second) == "other @1 %1"; }));
  // tmux counts whole seconds: press until the first client is ahead.
  ASSERT_TRUE(eventually([&] {
    first.press(" ");
    return tabOf("%0").windowIndex == 1;
  }));
  focus("%2");
  EXPECT_EQ(shownBy(first), "third @2 %2");
  EXPECT_EQ(shownBy(second), "other @1 %1");
}

TEST_F(TmuxFocus, StaysInTheClientsSessionWhenItHoldsTheWindow) {
  startServer();
  tmux({"new-session", "-d", "-s", "other", "-x", "80", "-y", "24"});
  tmux({"link-window", "-d", "-s", "main:0", "-t", "other:7"});
  const AttachedClient client(transport_->socketPath(), "other");
  ASSERT_TRUE(eventually([&] { return shownBy(client) == "other @1 %1"; }));
  focus("%0");
  EXPECT_EQ(shownBy(client), "other @0 %0");
}

TEST_F(TmuxFocus, SelectsForTheNextAttachWithoutAClientAndADisplay) {
  startServer();
  tmux({"new-window", "-d"});
  tmux({"split-window", "-d", "-t", "%1"});
  focus("%2");
  const AttachedClient client(transport_->socketPath(), "main");
  EXPECT_TRUE(eventually([&] { return shownBy(client) == "main @1 %2"; })) << shownBy(client);
}

TEST_F(TmuxFocus, OpensTheDesktopsTerminalWithoutAClient) {
  startServer();
  tmux({"new-session", "-d", "-s", "other", "-x", "80", "-y", "24"});
  // A terminal that needs no display, and no keyboard: it reads a pipe that it keeps open itself.
  const std::string opened = (directory_ / "opened").string();
  writeFile(directory_ / "bin" / "xdg-terminal-exec",
            "#!/bin/sh\nprintf '%s\\n' \"$@\" > " + opened + "\nprintf '[%s]' \"$TMUX\" >> " + opened +
                "\nmkfifo " + opened + ".keys\nexec script -qc \"$*\" /dev/null <> " + opened + ".keys\n");
  std::filesystem::permissions(directory_ / "bin" / "xdg-terminal-exec", std::filesystem::perms::owner_all);
  environment_["PATH"] = (directory_ / "bin").string() + ":" + environment_["PATH"];
  environment_["DISPLAY"] = ":99";
  focus("%1");
  EXPECT_EQ(tmux({"list-clients", "-F", "#{session_name} #{pane_id}"}), "other %1");
  EXPECT_TRUE(contentOf(opened).starts_with("/")) << contentOf(opened);
  EXPECT_TRUE(contentOf(opened).ends_with("\n%1\n[]")) << contentOf(opened);
}

TEST_F(TmuxFocus, SaysWhenTheDesktopsTerminalDoesNotShowIt) {
  startServer();
  writeFile(directory_ / "bin" / "xdg-terminal-exec", "#!/bin/sh\nexit 1\n");
  std::filesystem::permissions(directory_ / "bin" / "xdg-terminal-exec", std::filesystem::perms::owner_all);
  environment_["PATH"] = (directory_ / "bin").string() + ":" + environment_["PATH"];
  environment_["WAYLAND_DISPLAY"] = "wayland-9";
  EXPECT_EQ(structuredError([&] { focus("%0"); }).code, ErrorCode::terminalNotAvailable);
}

}  // namespace
}  // namespace velmora
