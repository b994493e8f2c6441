// The helper program as a child process, launched as MCP clients do: pipes, and hardly any environment.
#pragma once

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "LocalControl/SocketPlatform.h"

namespace velmora::testing {

class HelperProcess {
 public:
  /// The application is looked for below `runtimeDirectory`.
  explicit HelperProcess(const std::filesystem::path& runtimeDirectory,
                         std::vector<std::string> arguments = {}) {
    auto [childInput, input] = SocketPlatform::openPipe();
    auto [output, childOutput] = SocketPlatform::openPipe();
    auto [errors, childErrors] = SocketPlatform::openPipe();
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, childInput.get(), STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, childOutput.get(), STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, childErrors.get(), STDERR_FILENO);

    arguments.insert(arguments.begin(), VELMORA_BIN "/velmora");
    std::vector<std::string> environment{"HOME=" + runtimeDirectory.string(),
                                         "PATH=/usr/bin:/bin",
                                         "SHELL=/bin/sh",
                                         "TERM=xterm",
                                         "USER=tester",
                                         "XDG_RUNTIME_DIR=" + runtimeDirectory.string(),
                                         "TMPDIR=" + runtimeDirectory.string()};
    const int result = ::posix_spawn(&process_, arguments.front().c_str(), &actions, nullptr,
                                     pointers(arguments).data(), pointers(environment).data());
    ::posix_spawn_file_actions_destroy(&actions);
    if (result != 0) throw std::system_error(result, std::generic_category(), "posix_spawn");
    input_ = std::move(input);
    output_ = std::move(output);
    errors_ = std::move(errors);
  }
  ~HelperProcess() {
    if (process_ < 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;

  void write(std::string_view text) {
    while (!text.empty()) {
      const auto count = ::write(input_.get(), text.data(), text.size());
      if (count < 0) throw std::system_error(errno, std::generic_category(), "write");
      text.remove_prefix(static_cast<std::size_t>(count));
    }
  }

  /// Sends one message and returns the line that answers it.
  std::string ask(const std::string& message) {
    write(message + "\n");
    std::string line;
    for (char byte = 0; ::read(output_.get(), &byte, 1) == 1;) {
      if (byte == '\n') return line;
      line.push_back(byte);
    }
    throw std::runtime_error("the helper ended before it answered");
  }

  void closeInput() { input_.close(); }
  void closeOutput() { output_.close(); }

  std::string restOfOutput() { return readToEnd(output_.get()); }
  std::string restOfErrors() { return readToEnd(errors_.get()); }

  /// The exit status once the process has ended; a signal's number and 128 when one ended it.
  int wait() {
    int status = 0;
    ::waitpid(std::exchange(process_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

 private:
  static std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (auto& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
  }

  static std::string readToEnd(int descriptor) {
    std::string text;
    char buffer[4096];
    for (ssize_t count = 0; (count = ::read(descriptor, buffer, sizeof buffer)) > 0;) {
      text.append(buffer, static_cast<std::size_t>(count));
    }
    return text;
  }

  pid_t process_ = -1;
  FileDescriptor input_;
  FileDescriptor output_;
  FileDescriptor errors_;
};

}  // namespace velmora::testing
