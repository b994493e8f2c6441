// A program on a terminal of its own, as a user's login has it.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "System/Environment.h"
#include "System/FileDescriptor.h"
#include "tests/support/Eventually.h"

namespace velmora::testing {

/// Belongs to one thread. Destruction hangs the terminal up and kills the program if it still runs.
class PtyProgram {
 public:
  PtyProgram(std::vector<std::string> command, const Environment& environment)
      : terminal_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (!terminal_ || ::grantpt(terminal_.get()) != 0 || ::unlockpt(terminal_.get()) != 0)
      throw std::runtime_error("no terminal could be made");
    name_ = ::ptsname(terminal_.get());
    std::vector<std::string> variables;
    for (const auto& [variable, value] : environment) variables.push_back(variable + "=" + value);
    auto arguments = pointers(command);
    auto exported = pointers(variables);
    process_ = ::fork();
    if (process_ != 0) return;
    // Only what is safe between fork and exec.
    ::setsid();
    const int device = ::open(name_.c_str(), O_RDWR);
    ::ioctl(device, TIOCSCTTY, 0);
    for (int stream = 0; stream < 3; ++stream) ::dup2(device, stream);
    ::execve(arguments[0], arguments.data(), exported.data());
    ::_exit(127);
  }
  ~PtyProgram() {
    if (process_ < 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  PtyProgram(const PtyProgram&) = delete;
  PtyProgram& operator=(const PtyProgram&) = delete;

  pid_t process() const { return process_; }
  const std::string& terminal() const { return name_; }  ///< Its device's path.

  /// Whether the terminal shows what is typed, as it does for a shell.
  bool echoes() const {
    termios modes{};
    return ::tcgetattr(terminal_.get(), &modes) == 0 && (modes.c_lflag & ECHO) != 0;
  }

  void type(const std::string& text) const {
    if (!writeTo(terminal_, text).empty()) throw std::runtime_error("the terminal takes nothing");
  }

  /// What the terminal has shown once `text` is there; throws when it never is.
  const std::string& shownWith(const std::string& text) {
    while (shown_.find(text) == std::string::npos) {
      pollfd watched{terminal_.get(), POLLIN, 0};
      constexpr int milliseconds = std::chrono::milliseconds(patience).count();
      char block[4096];
      const auto count =
          ::poll(&watched, 1, milliseconds) == 1 ? ::read(terminal_.get(), block, sizeof block) : 0;
      if (count <= 0) throw std::runtime_error("\"" + text + "\" did not appear in: " + shown_);
      shown_.append(block, static_cast<std::size_t>(count));
    }
    return shown_;
  }

  /// The exit status once the program has ended.
  int wait() {
    int status = 0;
    if (!eventually([&] { return ::wait4(process_, &status, WNOHANG, &usage_) == process_; }))
      throw std::runtime_error("a program on a terminal did not end");
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  /// What the program used, once `wait` has returned.
  const rusage& usage() const { return usage_; }

 private:
  static std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (auto& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
  }

  FileDescriptor terminal_;
  std::string name_;
  pid_t process_ = -1;
  std::string shown_;
  rusage usage_{};
};

}  // namespace velmora::testing
