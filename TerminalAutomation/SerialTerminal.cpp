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

void SerialTerminal::useSettings(const PrivacyRetentionSettings& settings) {
  operations_->useSettings(settings);
}

std::future<void> SerialTerminal::mark(const TerminalMarks& marks) {
  return submit(looks_, deadlines_.operation, {},
                [this, marks](auto deadline) { operations_->mark(marks, deadline); });
}

std::string SerialTerminal::displayName() const { return operations_->displayName(); }

std::future<TerminalRuntimeStatus> SerialTerminal::status() {
  return submit(looks_, deadlines_.status, {},
                [this](auto deadline) { return operations_->status(deadline); });
}

// Each caller has a place of its own in the queue. The first of those who wait takes the listing; the places
// of the others come right after it, and find it taken. When it fails, the next one tries.
std::future<std::vector<TerminalTabSnapshot>> SerialTerminal::listSessions(Caller caller) {
  const MutexLock lock(queueing_);
  if (!next_) next_ = std::make_shared<SharedListing>();
  return submit(looks_, deadlines_.operation, std::move(caller), [this, shared = next_](auto deadline) {
    if (!*shared) {
      stopJoining(shared);
      *shared = operations_->listSessions(deadline);
    }
    return **shared;
  });
}

void SerialTerminal::stopJoining(const std::shared_ptr<SharedListing>& begun) {
  const MutexLock lock(queueing_);
  if (next_ == begun) next_.reset();
}

std::future<std::vector<TerminalTabSnapshot>> SerialTerminal::listTab(std::string tty, Caller caller) {
  const MutexLock lock(queueing_);
  next_.reset();  // who joined it after this call would get a listing from before it
  return submit(looks_, deadlines_.operation, std::move(caller),
                [this, tty = std::move(tty)](auto deadline) { return operations_->listTab(tty, deadline); });
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

std::future<void> SerialTerminal::typeUnsubmitted(std::string text, std::string tty, std::int64_t windowId,
                                                  bool allowBusy, Caller caller) {
  return submit(changes_, deadlines_.operation, std::move(caller),
                [this, text = std::move(text), tab = TabAddress{std::move(tty), windowId},
                 allowBusy](auto deadline) { operations_->typeUnsubmitted(text, tab, allowBusy, deadline); });
}

std::future<TerminalTabSnapshot> SerialTerminal::createWindowAs(WindowWish wish, Caller caller) {
  return submit(
      changes_, deadlines_.operation, std::move(caller),
      [this, wish = std::move(wish)](auto deadline) { return operations_->createWindowAs(wish, deadline); });
}

std::future<std::map<std::string, TabDetails>> SerialTerminal::tabDetails(Caller caller) {
  return submit(looks_, deadlines_.operation, std::move(caller),
                [this](auto deadline) { return operations_->tabDetails(deadline); });
}

std::future<std::shared_ptr<TabWatch>> SerialTerminal::watch(std::string command, std::string tty,
                                                             std::int64_t windowId, Caller caller) {
  return submit(reads_, deadlines_.operation, std::move(caller),
                [this, command = std::move(command), tab = TabAddress{std::move(tty), windowId}](
                    auto deadline) { return operations_->watch(command, tab, deadline); });
}

std::future<TabWatch::View> SerialTerminal::look(std::shared_ptr<TabWatch> watch, std::int64_t maxCharacters,
                                                 bool unfinished, Caller caller) {
  return submit(reads_, deadlines_.history, std::move(caller),
                [watch = std::move(watch), maxCharacters, unfinished](auto deadline) {
                  return watch->look(maxCharacters, unfinished, deadline);
                });
}

std::future<OutputFound> SerialTerminal::readAs(OutputWish wish, std::string tty, std::int64_t windowId,
                                                Caller caller) {
  const bool isLong = wish.source == OutputSource::history || wish.after;
  return submit(reads_, isLong ? deadlines_.history : deadlines_.operation, std::move(caller),
                [this, wish = std::move(wish), tab = TabAddress{std::move(tty), windowId}](auto deadline) {
                  return operations_->readAs(wish, tab, deadline);
                });
}

}  // namespace velmora
