// The one seam to tmux: one invocation of the tmux program.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

struct TmuxInvocation {
  std::vector<std::string> arguments;  ///< Commands; the transport adds the options that choose the server.
  std::optional<std::string> standardInput{};
  std::chrono::steady_clock::time_point deadline;
  std::size_t outputLimit = std::size_t{64} << 20;
};

struct TmuxAnswer {
  enum class End { exited, timedOut, cancelled, outputTooLarge, notInstalled, unsafeSocket };

  End end = End::exited;
  int exitStatus = 0;
  std::string output{};
  std::string errorOutput{};  ///< For `unsafeSocket` and `notInstalled` a sentence that says what is wrong.
};

/// Implementations are thread-safe.
class TmuxTransport {
 public:
  virtual ~TmuxTransport() = default;

  /// Waits for the end or the deadline. When it does not end by itself the tmux process is gone on return;
  /// what the server had received of it by then may still happen.
  virtual TmuxAnswer run(const TmuxInvocation& invocation) = 0;

  /// The socket of the server that `run` speaks to.
  virtual std::string socketPath() const = 0;

  /// Makes the run under way and all later ones end at once.
  virtual void cancel() noexcept = 0;
};

}  // namespace velmora
