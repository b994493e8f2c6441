// Runs the tmux program: one process per call.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "System/ChildProcess.h"
#include "System/Environment.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

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
