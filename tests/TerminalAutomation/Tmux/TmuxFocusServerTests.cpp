#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::eventually;
using testing::structuredError;
using testing::writeFile;

/// A tmux client on a terminal of its own, as a person has it.
class AttachedClient {
 public:
  AttachedClient(const std::string& socket, const std::string& session) {
    winsize size{.ws_row = 30, .ws_col = 100, .ws_xpixel = 0, .ws_ypixel = 0};
    process_ = ::forkpty(&terminal_, nullptr, nullptr, &size);
    if (process_ == 0) {
      ::setenv("TERM", "xterm", 1);
      ::unsetenv("TMUX");
      ::execlp("tmux", "tmux", "-u", "-S", socket.c_str(), "attach-session", "-t", session.c_str(), nullptr);
      ::_exit(127);
    }
    ::fcntl(terminal_, F_SETFL, O_NONBLOCK);
    ::fcntl(terminal_, F_SETFD, FD_CLOEXEC);
  }
  ~AttachedClient() {
    ::close(terminal_);
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  AttachedClient(const AttachedClient&) = delete;
  AttachedClient& operator=(const AttachedClient&) = delete;

  void press(const std::string& keys) const {
    EXPECT_EQ(::write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }
  /// Takes what tmux draws, so that it is never held up.
  void drain() const {
    std::array<char, 65536> block;
    while (::read(terminal_, block.data(), block.size()) > 0) {
    }
  }
  std::string process() const { return std::to_string(process_); }

 private:
  int terminal_ = -1;
  pid_t process_ = -1;
};

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
