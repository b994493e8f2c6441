// Runs one program to its end, within a deadline and an output limit.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "System/FileDescriptor.h"

namespace velmora {

struct ChildRequest {
  std::filesystem::path program;
  std::vector<std::string> arguments;          ///< Without the program's own name.
  std::vector<std::string> environment;        ///< "NAME=value"
  std::optional<std::string> standardInput{};  ///< Nothing: /dev/null.
  std::chrono::steady_clock::time_point deadline;
  std::size_t outputLimit;  ///< Bytes of standard output and standard error, each.
  bool ownSession = false;  ///< Detached from the terminal that the caller runs in.
};

struct ChildResult {
  enum class End { exited, timedOut, cancelled, outputTooLarge, notStarted };

  End end = End::notStarted;
  int exitStatus = 0;  ///< As a shell reports it: 128 + the number of a fatal signal. `exited` only.
  int startError = 0;  ///< errno of `notStarted`.
  std::string output{};
  std::string errorOutput{};
};

/// Thread-safe. Every run leaves no zombie and no descriptor behind. A child that does not end in time is
/// killed; its streams are not waited for, since another process may hold them. Standard input that the
/// child does not want raises no SIGPIPE.
class ChildProcessRunner {
 public:
  /// Throws std::system_error when there are no descriptors left.
  ChildProcessRunner() = default;
  ChildProcessRunner(const ChildProcessRunner&) = delete;
  ChildProcessRunner& operator=(const ChildProcessRunner&) = delete;

  /// Throws std::system_error when the system cannot make pipes.
  ChildResult run(const ChildRequest& request);

  /// Ends the runs under way with `cancelled`, and every later one.
  void cancel() noexcept;

 private:
  Pipe cancelPipe_ = openPipe();
  std::atomic<bool> cancelled_ = false;
};

}  // namespace velmora
