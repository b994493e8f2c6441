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

/// Thread-safe. When the bridge is a service of systemd, a server that it starts gets a scope of its own.
class TmuxProcessTransport final : public TmuxTransport {
 public:
  TmuxProcessTransport(Environment environment, const std::optional<std::filesystem::path>& socket,
                       std::optional<std::filesystem::path> program, bool inService = false);

  TmuxAnswer run(const TmuxInvocation& invocation) override;
  std::string socketPath() const override { return socket_.string(); }
  void cancel() noexcept override { runner_.cancel(); }

 private:
  static bool mayStartServer(const TmuxInvocation& invocation);
  ChildResult runInScope(const ChildRequest& request);

  const Environment environment_;
  const std::vector<std::string> childEnvironment_;
  const std::filesystem::path socket_;
  const std::optional<std::filesystem::path> program_;
  const bool inService_;
  ChildProcessRunner runner_;
};

}  // namespace velmora
