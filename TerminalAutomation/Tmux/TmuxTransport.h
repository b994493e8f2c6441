// The one seam to tmux: one invocation of the tmux program.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

struct TmuxInvocation {
  std::vector<std::string> arguments;  ///< Commands; the transport adds the options that choose the server.
  std::optional<std::string> standardInput{};
  std::chrono::steady_clock::time_point deadline;
  std::size_t outputLimit = std::size_t{64} << 20;
  /// Called on the same thread once the server has the command, while its answer is awaited. A transport may
  /// leave it out, and one that asks twice may call it twice.
  std::function<void()> meanwhile{};
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

  /// From now on, or no longer: starts the tmux program for every call.
  virtual void useProgramOnly(bool /*only*/) noexcept {}

  /// How the server that was asked last is asked, a few words for the user; empty while that is not known.
  virtual std::string way() const { return "by the tmux program"; }

  /// Makes the run under way and all later ones end at once.
  virtual void cancel() noexcept = 0;
};

}  // namespace velmora
