#include "TerminalAutomation/Tmux/TmuxExecutor.h"

#include <chrono>
#include <thread>
#include <utility>

#include "TerminalAutomation/Tmux/TmuxOperations.h"

namespace velmora {

namespace {

TmuxExecutorOptions completed(TmuxExecutorOptions options) {
  if (!options.sleep)
    options.sleep = [](std::chrono::milliseconds pause) { std::this_thread::sleep_for(pause); };
  if (options.homeDirectory.empty()) options.homeDirectory = environmentValue(options.environment, "HOME");
  if (options.homeDirectory.empty()) options.homeDirectory = "/";
  return options;
}

}  // namespace

TmuxExecutor::TmuxExecutor(const TmuxExecutorOptions& options)
    : TmuxExecutor(options, TmuxParts::ofSystem(options)) {}

TmuxExecutor::TmuxExecutor(TmuxExecutorOptions options, TmuxParts parts)
    : options_(completed(std::move(options))),
      parts_(std::move(parts)),
      operations_(std::make_unique<TmuxOperations>(options_, parts_)) {}

TmuxExecutor::~TmuxExecutor() { cancel(); }

void TmuxExecutor::cancel() noexcept { parts_.transport->cancel(); }

// A queue behind a server that hangs empties at the pace of one deadline, not of one each.
template <class Work>
auto TmuxExecutor::submit(Work work) {
  return executor_.submit([this, asked = std::chrono::steady_clock::now(), work = std::move(work)]() mutable {
    operations_->setAsked(asked);
    return work();
  });
}

std::future<TerminalRuntimeStatus> TmuxExecutor::status() {
  return submit([this] { return operations_->status(); });
}

std::future<std::vector<TerminalTabSnapshot>> TmuxExecutor::listSessions() {
  return submit([this] { return operations_->listSessions(); });
}

std::future<TerminalTabSnapshot> TmuxExecutor::createWindow() {
  return submit([this] { return operations_->createWindow(); });
}

std::future<void> TmuxExecutor::send(std::string command, std::string tty, std::int64_t windowId,
                                     bool allowBusy) {
  return submit([this, command = std::move(command), tty = std::move(tty), windowId, allowBusy] {
    operations_->sendCommand(command, tty, windowId, allowBusy);
  });
}

std::future<void> TmuxExecutor::send(TerminalKey key, std::int64_t repeatCount, std::string tty,
                                     std::int64_t windowId, bool allowBusy) {
  return submit([this, key, repeatCount, tty = std::move(tty), windowId, allowBusy] {
    operations_->sendKey(key, repeatCount, tty, windowId, allowBusy);
  });
}

std::future<TerminalOutput> TmuxExecutor::readOutput(OutputSource source, std::int64_t maxCharacters,
                                                     std::string tty, std::int64_t windowId) {
  return submit([this, source, maxCharacters, tty = std::move(tty), windowId] {
    return operations_->readOutput(source, maxCharacters, tty, windowId);
  });
}

std::future<TerminalScreenCapture> TmuxExecutor::captureScreen(std::string tty, std::int64_t windowId) {
  return executor_.submit(
      [this, tty = std::move(tty), windowId] { return operations_->captureScreen(tty, windowId); });
}

std::future<void> TmuxExecutor::focus(std::string tty, std::int64_t windowId) {
  return submit([this, tty = std::move(tty), windowId] { operations_->focus(tty, windowId); });
}

}  // namespace velmora
