// The helper program as a child process, launched as MCP clients do: pipes, and hardly any environment.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/ChildProgram.h"

namespace velmora::testing {

class HelperProcess : public ChildProgram {
 public:
  /// The application is looked for below `runtimeDirectory`.
  explicit HelperProcess(const std::filesystem::path& runtimeDirectory,
                         std::vector<std::string> arguments = {}, const Environment& further = {})
      : ChildProgram(command(std::move(arguments)), environment(runtimeDirectory, further)) {}

  /// The helper launched by a shell, which runs `script` with the helper's path as "$0".
  static HelperProcess fromShell(const std::filesystem::path& runtimeDirectory, const std::string& script,
                                 const Environment& further = {}) {
    return HelperProcess({"/bin/sh", "-c", script, VELMORA_BIN "/velmora"},
                         environment(runtimeDirectory, further));
  }

  /// Sends one message and returns the line that answers it.
  std::string ask(const std::string& message) {
    write(message + "\n");
    auto line = readLine();
    if (!line) throw std::runtime_error("the helper ended before it answered");
    return std::move(*line);
  }

 private:
  HelperProcess(std::vector<std::string> command, const Environment& environment)
      : ChildProgram(std::move(command), environment) {}

  static std::vector<std::string> command(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), VELMORA_BIN "/velmora");
    return arguments;
  }

  static Environment environment(const std::filesystem::path& runtimeDirectory, const Environment& further) {
    Environment variables{{"HOME", runtimeDirectory.string()},
                          {"PATH", "/usr/bin:/bin"},
                          {"SHELL", "/bin/sh"},
                          {"TERM", "xterm"},
                          {"USER", "tester"},
                          {"XDG_RUNTIME_DIR", runtimeDirectory.string()},
                          {"TMPDIR", runtimeDirectory.string()}};
    variables.insert(further.begin(), further.end());
    return variables;
  }
};

}  // namespace velmora::testing
