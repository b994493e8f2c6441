// The adapter that drives tmux: a window is a tmux window, a tab is a pane.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "System/SerialExecutor.h"
#include "TerminalAutomation/TerminalAutomating.h"
#include "TerminalAutomation/Tmux/TmuxOptions.h"

namespace velmora {

class TmuxOperations;

/// Thread-safe; the operations run one after another on the adapter's own thread. Each ends within its
/// deadline, counted from the call, also when the server hangs. Failures are StructuredErrors in tmux's
/// words. Destruction ends the operation under way at once and fails those that wait, some with
/// std::future_errc::broken_promise. The sessions outlive the adapter.
class TmuxExecutor final : public TerminalAutomating {
 public:
  using TerminalAutomating::send;

  explicit TmuxExecutor(const TmuxExecutorOptions& options);
  TmuxExecutor(TmuxExecutorOptions options, TmuxParts parts);
  ~TmuxExecutor() override;

  std::string displayName() const override { return "tmux"; }
  std::future<TerminalRuntimeStatus> status() override;
  std::future<std::vector<TerminalTabSnapshot>> listSessions() override;
  std::future<TerminalTabSnapshot> createWindow() override;
  std::future<void> send(std::string command, std::string tty, std::int64_t windowId,
                         bool allowBusy) override;
  std::future<void> send(TerminalKey key, std::int64_t repeatCount, std::string tty, std::int64_t windowId,
                         bool allowBusy) override;
  std::future<TerminalOutput> readOutput(OutputSource source, std::int64_t maxCharacters, std::string tty,
                                         std::int64_t windowId) override;
  std::future<TerminalScreenCapture> captureScreen(std::string tty, std::int64_t windowId) override;
  std::future<void> focus(std::string tty, std::int64_t windowId) override;
  void cancel() noexcept override;

 private:
  template <class Work>
  auto submit(Work work);

  const TmuxExecutorOptions options_;
  const TmuxParts parts_;
  const std::unique_ptr<TmuxOperations> operations_;  // used on the executor's thread only
  SerialExecutor executor_{"tmux"};                   // goes first: its thread uses what stands above
};

}  // namespace velmora
