// A user at a terminal of their own.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>

namespace velmora::testing {

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

}  // namespace velmora::testing
