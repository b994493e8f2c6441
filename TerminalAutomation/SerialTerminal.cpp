#include "TerminalAutomation/SerialTerminal.h"

#include <utility>

#include "BridgeModels/StructuredError.h"

namespace velmora {

namespace {

constexpr std::size_t readsAtOnce = 4;

}  // namespace

SerialTerminal::SerialTerminal(std::unique_ptr<TerminalOperations> operations, TerminalDeadlines deadlines)
    : operations_(std::move(operations)),
      deadlines_(deadlines),
      changes_("terminal", 1),
      ownLooks_("terminal-looks", 1),
      ownReads_("terminal-reads", readsAtOnce),
      ownPictures_("terminal-pictures", 1),
      looks_(operations_->isSerial() ? changes_ : ownLooks_),
      reads_(operations_->isSerial() ? changes_ : ownReads_),
      pictures_(operations_->isSerial() ? changes_ : ownPictures_) {}

SerialTerminal::~SerialTerminal() { operations_->cancel(); }

void SerialTerminal::expectCaller(const Caller& caller) {
  if (!caller.hasLeft()) return;
  throw StructuredError{.code = ErrorCode::bridgeUnavailable,
                        .message = "The client left before its call was begun; nothing was done.",
                        .retryable = true,
                        .recoverySuggestion = "Call again."};
}

void SerialTerminal::cancel() noexcept { operations_->cancel(); }

std::string SerialTerminal::displayName() const { return operations_->displayName(); }

std::future<TerminalRuntimeStatus> SerialTerminal::status() {
  return submit(looks_, deadlines_.status, {},
                [this](auto deadline) { return operations_->status(deadline); });
}

std::future<std::vector<TerminalTabSnapshot>> SerialTerminal::listSessions(Caller caller) {
  return submit(looks_, deadlines_.operation, std::move(caller),
                [this](auto deadline) { return operations_->listSessions(deadline); });
}

std::future<TerminalTabSnapshot> SerialTerminal::createWindow(Caller caller) {
  return submit(changes_, deadlines_.operation, std::move(caller),
                [this](auto deadline) { return operations_->createWindow(deadline); });
}

std::future<void> SerialTerminal::send(std::string command, std::string tty, std::int64_t windowId,
                                       bool allowBusy, Caller caller) {
  return submit(changes_, deadlines_.operation, std::move(caller),
                [this, command = std::move(command), tab = TabAddress{std::move(tty), windowId},
                 allowBusy](auto deadline) { operations_->sendCommand(command, tab, allowBusy, deadline); });
}

std::future<void> SerialTerminal::send(TerminalKey key, std::int64_t repeatCount, std::string tty,
                                       std::int64_t windowId, bool allowBusy, Caller caller) {
  return submit(changes_, deadlines_.operation, std::move(caller),
                [this, key, repeatCount, tab = TabAddress{std::move(tty), windowId}, allowBusy](
                    auto deadline) { operations_->sendKey(key, repeatCount, tab, allowBusy, deadline); });
}

std::future<TerminalOutput> SerialTerminal::readOutput(OutputSource source, std::int64_t maxCharacters,
                                                       std::string tty, std::int64_t windowId,
                                                       Caller caller) {
  const auto allowed = source == OutputSource::history ? deadlines_.history : deadlines_.operation;
  return submit(reads_, allowed, std::move(caller),
                [this, source, maxCharacters, tab = TabAddress{std::move(tty), windowId}](auto deadline) {
                  return operations_->readOutput(source, maxCharacters, tab, deadline);
                });
}

std::future<TerminalScreenCapture> SerialTerminal::captureScreen(std::string tty, std::int64_t windowId,
                                                                 Caller caller) {
  return submit(pictures_, deadlines_.operation, std::move(caller),
                [this, tab = TabAddress{std::move(tty), windowId}](auto deadline) {
                  return operations_->captureScreen(tab, deadline);
                });
}

std::future<void> SerialTerminal::focus(std::string tty, std::int64_t windowId, Caller caller) {
  return submit(changes_, deadlines_.operation, std::move(caller),
                [this, tab = TabAddress{std::move(tty), windowId}](auto deadline) {
                  operations_->focus(tab, deadline);
                });
}

}  // namespace velmora
