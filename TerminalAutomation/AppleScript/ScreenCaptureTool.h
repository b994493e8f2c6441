// Pictures of the screen through the system's own tool.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "BridgeModels/Uuid.h"
#include "System/ChildProcess.h"
#include "System/Environment.h"

namespace velmora {

/// Runs a system tool to its end. Implementations are thread-safe.
class ProgramRunner {
 public:
  virtual ~ProgramRunner() = default;

  /// Waits for the end; kills a program that has not ended by the deadline. Returns the exit status, 128 +
  /// the number of a fatal signal. Throws std::system_error when the program cannot be started.
  virtual int run(const std::string& program, const std::vector<std::string>& arguments,
                  std::chrono::steady_clock::time_point deadline) = 0;

  /// Ends the run under way, as if killed, and every later one.
  virtual void cancel() noexcept = 0;
};

/// The system's programs, in the bridge's own environment.
class SystemProgramRunner final : public ProgramRunner {
 public:
  explicit SystemProgramRunner(const Environment& environment);

  int run(const std::string& program, const std::vector<std::string>& arguments,
          std::chrono::steady_clock::time_point deadline) override;
  void cancel() noexcept override { children_.cancel(); }

 private:
  const std::vector<std::string> environment_;
  ChildProcessRunner children_;
};

/// A part of the screen in points; the origin is the main display's upper left corner.
struct ScreenBounds {
  std::int64_t left = 0;
  std::int64_t top = 0;
  std::int64_t right = 0;
  std::int64_t bottom = 0;
};

/// Writes what stands within `bounds` (at least one point wide and high) to the picture file of `id` and
/// returns its path. Throws PlatformError with the tool's exit status when it failed or wrote no file,
/// std::system_error when it cannot be started or the folder cannot be made.
std::filesystem::path captureScreenBounds(const ScreenBounds& bounds,
                                          const std::filesystem::path& temporaryDirectory, const Uuid& id,
                                          ProgramRunner& programs,
                                          std::chrono::steady_clock::time_point deadline);

}  // namespace velmora
