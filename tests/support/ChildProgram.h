// A program as a child process: pipes on its three streams, and no environment but the one given.
#pragma once

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "System/Environment.h"
#include "System/SocketPlatform.h"
#include "tests/support/Eventually.h"

namespace velmora::testing {

/// Belongs to one thread. Destruction kills the program if it still runs. Waiting past `patience` throws
/// std::runtime_error.
class ChildProgram {
 public:
  ChildProgram(std::vector<std::string> command, const Environment& environment) {
    auto [childInput, input] = openPipe();
    auto [output, childOutput] = openPipe();
    auto [errors, childErrors] = openPipe();
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, childInput.get(), STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, childOutput.get(), STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, childErrors.get(), STDERR_FILENO);
    std::vector<std::string> variables;
    for (const auto& [name, value] : environment) variables.push_back(name + "=" + value);
    const int result = ::posix_spawnp(&process_, command.front().c_str(), &actions, nullptr,
                                      pointers(command).data(), pointers(variables).data());
    ::posix_spawn_file_actions_destroy(&actions);
    if (result != 0) throw std::system_error(result, std::generic_category(), command.front());
    input_ = std::move(input);
    output_ = std::move(output);
    errors_ = std::move(errors);
  }
  ~ChildProgram() {
    if (process_ < 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  pid_t process() const { return process_; }

  /// Nobody may have closed the program's end: SIGPIPE would end the caller.
  void write(std::string_view text) {
    while (!text.empty()) {
      const auto count = ::write(input_.get(), text.data(), text.size());
      if (count < 0) throw std::system_error(errno, std::generic_category(), "write");
      text.remove_prefix(static_cast<std::size_t>(count));
    }
  }
  void closeInput() { input_.close(); }
  void closeOutput() { output_.close(); }

  /// The next line of the output, without its end; nothing at the end of the output.
  std::optional<std::string> readLine() {
    std::size_t end = 0;
    for (std::size_t searched = 0; (end = unread_.find('\n', searched)) == std::string::npos;) {
      searched = unread_.size();
      if (!readMore(output_.get(), unread_)) return std::nullopt;
    }
    const std::string line = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    return line;
  }

  /// Whether there is something to read, or the output has ended.
  bool hasOutput() const {
    pollfd watched{output_.get(), POLLIN, 0};
    return !unread_.empty() || ::poll(&watched, 1, /*timeout=*/0) == 1;
  }

  /// Both read until no process has the stream open any more.
  std::string restOfOutput() {
    while (readMore(output_.get(), unread_)) continue;
    return std::exchange(unread_, {});
  }
  std::string restOfErrors() {
    std::string text;
    while (readMore(errors_.get(), text)) continue;
    return text;
  }

  void signal(int number) const { ::kill(process_, number); }

  /// The exit status once the program has ended; 128 and a signal's number when one ended it.
  int wait() {
    int status = 0;
    if (!eventually([&] { return ::wait4(process_, &status, WNOHANG, &usage_) == process_; })) {
      throw std::runtime_error("a child program did not end");
    }
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

  // False at the end of the stream.
  static bool readMore(int descriptor, std::string& text) {
    pollfd watched{descriptor, POLLIN, 0};
    constexpr int milliseconds = std::chrono::milliseconds(patience).count();
    if (::poll(&watched, 1, milliseconds) != 1) throw std::runtime_error("a child program says nothing");
    char buffer[65536];
    const auto count = ::read(descriptor, buffer, sizeof buffer);
    if (count < 0) throw std::system_error(errno, std::generic_category(), "read");
    text.append(buffer, static_cast<std::size_t>(count));
    return count > 0;
  }

  pid_t process_ = -1;
  FileDescriptor input_;
  FileDescriptor output_;
  FileDescriptor errors_;
  std::string unread_;
  rusage usage_{};
};

}  // namespace velmora::testing
