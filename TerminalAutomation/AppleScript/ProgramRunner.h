// Runs a system tool to its end.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "System/ChildProcess.h"
#include "System/Environment.h"

namespace velmora {

/// Implementations are thread-safe.
class ProgramRunner {
 public:
  virtual ~ProgramRunner() = default;

  /// Waits for the end; returns the exit status, 128 + the number of a fatal signal. Throws
  /// std::system_error when the program cannot be started.
  virtual int run(const std::string& program, const std::vector<std::string>& arguments) = 0;

  /// Ends the run under way, as if killed, and every later one.
  virtual void cancel() noexcept = 0;
};

/// The system's programs, in the bridge's own environment. One that hangs is killed after `longest`.
class SystemProgramRunner final : public ProgramRunner {
 public:
  explicit SystemProgramRunner(const Environment& environment,
                               std::chrono::milliseconds longest = std::chrono::seconds(30));

  int run(const std::string& program, const std::vector<std::string>& arguments) override;
  void cancel() noexcept override { children_.cancel(); }

 private:
  std::vector<std::string> environment_;
  const std::chrono::milliseconds longest_;
  ChildProcessRunner children_;
};

}  // namespace velmora
