// Runs the tmux program: one process per call.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "BridgeModels/Environment.h"
#include "TerminalAutomation/Tmux/ChildProcess.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

/// The program in a folder of $PATH, or in the folders where package managers put it (a program started by
/// a desktop has a short $PATH). Nothing when it is in none.
std::optional<std::filesystem::path> findProgram(const std::string& name, const Environment& environment);

/// What a tmux server may inherit: it hands its first client's environment to every later shell.
std::vector<std::string> cleanedTmuxEnvironment(const Environment& environment);

/// Thread-safe.
class TmuxProcessTransport final : public TmuxTransport {
 public:
  TmuxProcessTransport(Environment environment, const std::optional<std::filesystem::path>& socket,
                       std::optional<std::filesystem::path> program);

  TmuxAnswer run(const TmuxInvocation& invocation) override;
  std::string socketPath() const override { return socket_.string(); }
  void cancel() noexcept override { runner_.cancel(); }

 private:
  const Environment environment_;
  const std::vector<std::string> childEnvironment_;
  const std::filesystem::path socket_;
  const std::optional<std::filesystem::path> program_;
  ChildProcessRunner runner_;
};

}  // namespace velmora
