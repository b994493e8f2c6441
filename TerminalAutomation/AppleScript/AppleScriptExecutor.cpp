#include "TerminalAutomation/AppleScript/AppleScriptExecutor.h"

#include <utility>

namespace velmora {

AppleScriptExecutor::AppleScriptExecutor(AppleScriptParts parts, const std::string& source)
    : parts_(std::move(parts)), operations_(parts_) {
  operations_.compile(source);
}

AppleScriptExecutor::~AppleScriptExecutor() { cancel(); }

void AppleScriptExecutor::cancel() noexcept {
  cancelled_ = true;
  parts_.programs->cancel();
}

template <class Work>
auto AppleScriptExecutor::submit(Work work) {
  return executor_.submit([this, work = std::move(work)] {
    if (cancelled_) {
      throw PlatformError("Velmora.Automation", platformErrorCode::userCancelled,
                          "The bridge is shutting down.");
    }
    return work();
  });
}

std::future<TerminalRuntimeStatus> AppleScriptExecutor::status() {
  return submit([this] { return operations_.status(); });
}

std::future<std::vector<TerminalTabSnapshot>> AppleScriptExecutor::listSessions() {
  return submit([this] { return operations_.listSessions(); });
}

std::future<TerminalTabSnapshot> AppleScriptExecutor::createWindow() {
  return submit([this] { return operations_.createWindow(); });
}

std::future<void> AppleScriptExecutor::send(std::string command, std::string tty, std::int64_t windowId,
                                            bool allowBusy) {
  return submit([this, command = std::move(command), tty = std::move(tty), windowId, allowBusy] {
    operations_.sendCommand(command, tty, windowId, allowBusy);
  });
}

std::future<void> AppleScriptExecutor::send(TerminalKey key, std::int64_t repeatCount, std::string tty,
                                            std::int64_t windowId, bool allowBusy) {
  return submit([this, key, repeatCount, tty = std::move(tty), windowId, allowBusy] {
    operations_.sendKey(key, repeatCount, tty, windowId, allowBusy);
  });
}

std::future<TerminalOutput> AppleScriptExecutor::readOutput(OutputSource source, std::int64_t maxCharacters,
                                                            std::string tty, std::int64_t windowId) {
  return submit([this, source, maxCharacters, tty = std::move(tty), windowId] {
    return operations_.readOutput(source, maxCharacters, tty, windowId);
  });
}

std::future<TerminalScreenCapture> AppleScriptExecutor::captureScreen(std::string tty,
                                                                      std::int64_t windowId) {
  return submit([this, tty = std::move(tty), windowId] { return operations_.captureScreen(tty, windowId); });
}

std::future<void> AppleScriptExecutor::focus(std::string tty, std::int64_t windowId) {
  return submit([this, tty = std::move(tty), windowId] { operations_.focus(tty, windowId); });
}

std::future<void> AppleScriptExecutor::requestAccess() {
  return submit([this] { operations_.requestTerminalAccess(); });
}

std::future<void> AppleScriptExecutor::requestSystemEventsAccess() {
  return submit([this] { operations_.requestSystemEventsAccess(); });
}

std::future<void> AppleScriptExecutor::closeTestWindow(std::int64_t windowId) {
  return submit([this, windowId] { operations_.closeWindow(windowId); });
}

}  // namespace velmora
