#include "TerminalAutomation/AppleScript/AppleScriptOperations.h"

#include <limits>
#include <system_error>
#include <utility>

#include "TerminalAutomation/AppleScript/BrokenContract.h"
#include "TerminalAutomation/AppleScript/KeyCodes.h"

namespace velmora {

namespace {

constexpr auto scriptDomain = "Velmora.AppleScript";
constexpr std::size_t rowLength = 7;

constexpr auto terminal = "com.apple.Terminal";
constexpr auto systemEvents = "com.apple.systemevents";

// System Events starts within five seconds, or there is something wrong with it.
constexpr int looksAtStart = 50;
constexpr std::chrono::milliseconds timeBetweenLooks{100};

// As the script numbers its own errors.
constexpr std::int64_t notInFront = 1012;
constexpr std::int64_t notOnScreen = 1013;

std::int32_t scriptInteger(std::int64_t value) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (value < Limits::min() || value > Limits::max()) brokenContract("an integer has more than 32 bits");
  return static_cast<std::int32_t>(value);
}

// The item at a position from 1, as the script counts. What is missing reads as nothing.
const ScriptDescriptor& item(const ScriptDescriptor& list, std::size_t position) {
  static const ScriptDescriptor missing;
  return position <= list.items.size() ? list.items[position - 1] : missing;
}

PlatformError scriptError(std::int64_t number) {
  return {scriptDomain, number, "Terminal AppleScript operation failed."};
}

TerminalTabSnapshot snapshotOf(const ScriptDescriptor& row) {
  return {.tty = item(row, 1).text,
          .windowId = item(row, 2).integer,
          .windowIndex = item(row, 3).integer,
          .tabIndex = item(row, 4).integer,
          .title = item(row, 5).text,
          .busy = item(row, 6).boolean,
          .selected = item(row, 7).boolean};
}

}  // namespace

void AppleScriptOperations::expectTime(Deadline deadline) const {
  if (cancelled_) {
    throw PlatformError("Velmora.Automation", platformErrorCode::userCancelled,
                        "The bridge is shutting down.");
  }
  if (std::chrono::steady_clock::now() >= deadline) {
    throw PlatformError("Velmora.Automation", platformErrorCode::timedOut,
                        "Terminal.app did not answer in time.");
  }
}

// An event to an application that the user was never asked about raises the system's question, and takes it
// away again when its few seconds are over. So the system is asked in silence until Terminal has taken an
// event.
std::int64_t AppleScriptOperations::consentToTerminal(Deadline deadline) {
  expectTime(deadline);
  if (isProven_) return consentStatus::granted;
  const auto status = parts_.script->consent(terminal, /*asksUser=*/false, deadline);
  if (status == consentStatus::notAsked && !std::exchange(hasAsked_, true)) undecided_();
  return status;
}

template <std::size_t Arity, class... Arguments>
ScriptDescriptor AppleScriptOperations::run(Deadline deadline, const ScriptHandler<Arity>& handler,
                                            Arguments... arguments) {
  static_assert(sizeof...(Arguments) == Arity);
  expectTime(deadline);
  auto reply =
      parts_.script->call(std::string(handler.name), {ScriptArgument(std::move(arguments))...}, deadline);
  if (const auto* failure = std::get_if<ScriptFailure>(&reply)) {
    if (failure->number == consentStatus::denied) isProven_ = false;
    throw scriptError(failure->number.value_or(platformErrorCode::scriptError));
  }
  return std::get<ScriptDescriptor>(std::move(reply));
}

template <std::size_t Arity, class... Arguments>
ScriptDescriptor AppleScriptOperations::call(Deadline deadline, const ScriptHandler<Arity>& handler,
                                             Arguments... arguments) {
  const auto consent = consentToTerminal(deadline);
  if (consent == consentStatus::denied || consent == consentStatus::notAsked) {
    throw scriptError(consentStatus::denied);
  }
  auto reply = run(deadline, handler, std::move(arguments)...);
  isProven_ = true;
  return reply;
}

AppleScriptOperations::AppleScriptOperations(AppleScriptParts parts, const std::string& source)
    : parts_(std::move(parts)) {
  if (!parts_.script->compile(source)) {
    throw PlatformError(scriptDomain, platformErrorCode::scriptError,
                        "Bundled Terminal AppleScript failed to compile.");
  }
}

TerminalRuntimeStatus AppleScriptOperations::status(Deadline deadline) {
  // Asked of the system, because an event to Terminal would launch it.
  if (!parts_.isRunning(terminal)) return {};
  const auto consent = consentToTerminal(deadline);
  if (consent == consentStatus::notAsked) return {.running = true};
  if (consent == consentStatus::denied) throw scriptError(consent);
  const auto reply = run(deadline, scriptHandler::bridgeStatus);
  isProven_ = reply.items.empty() || reply.items.front().boolean;
  return {.running = isProven_,
          .windowCount = item(reply, 2).integer,
          .permission = AutomationPermission::granted};
}

std::vector<TerminalTabSnapshot> AppleScriptOperations::listSessions(Deadline deadline) {
  const auto reply = call(deadline, scriptHandler::listSessions);
  if (reply.items.empty()) brokenContract("the script listed nothing at all");
  std::vector<TerminalTabSnapshot> snapshots;
  for (const auto& row : reply.items) {
    if (row.items.size() >= rowLength) snapshots.push_back(snapshotOf(row));
  }
  return snapshots;
}

TerminalTabSnapshot AppleScriptOperations::createWindow(Deadline deadline) {
  const auto row = call(deadline, scriptHandler::createWindow);
  if (row.items.size() < rowLength) throw PlatformError(scriptDomain, platformErrorCode::noSuchObject);
  return snapshotOf(row);
}

void AppleScriptOperations::sendCommand(const std::string& command, const TabAddress& tab, bool allowBusy,
                                        Deadline deadline) {
  call(deadline, scriptHandler::sendCommand, command, tab.tty, scriptInteger(tab.windowId), allowBusy);
}

void AppleScriptOperations::sendKey(TerminalKey key, std::int64_t repeatCount, const TabAddress& tab,
                                    bool allowBusy, Deadline deadline) {
  const auto presses = scriptInteger(repeatCount);
  const auto press = [&](std::int32_t count, bool busyAllowed) {
    call(deadline, scriptHandler::sendKey, virtualKeyCode(key), count, tab.tty, scriptInteger(tab.windowId),
         busyAllowed);
  };
  const auto isFirst = [&] { return isFirstOnScreen(parts_.screenWindows(), tab.windowId); };
  // Without presses it brings the tab to the front. The system loses some requests that follow a click.
  press(0, allowBusy);
  if (!isFirst()) press(0, allowBusy);
  for (std::int32_t pressed = 0; pressed < presses; ++pressed) {
    if (!isFirst()) throw PlatformError(scriptDomain, notInFront, "Another window is in front.");
    // A key may start what makes the tab busy; the rest of them belong to it all the same.
    press(1, /*busyAllowed=*/true);
  }
}

TerminalOutput AppleScriptOperations::readOutput(OutputSource source, std::int64_t maxCharacters,
                                                 const TabAddress& tab, Deadline deadline) {
  const std::string sourceName = source == OutputSource::history ? "history" : "visible";
  const auto reply = call(deadline, scriptHandler::readOutput, sourceName, scriptInteger(maxCharacters),
                          tab.tty, scriptInteger(tab.windowId));
  return {.text = item(reply, 1).text, .source = source, .originalCharacterCount = item(reply, 2).integer};
}

TerminalScreenCapture AppleScriptOperations::captureScreen(const TabAddress& tab, Deadline deadline) {
  const auto reply = call(deadline, scriptHandler::captureBounds, tab.tty, scriptInteger(tab.windowId));
  if (reply.items.size() < 4) throw PlatformError("Velmora.ScreenCapture", platformErrorCode::noSuchObject);
  expectOnScreen(tab.windowId);
  const ScreenBounds bounds{.left = item(reply, 1).integer,
                            .top = item(reply, 2).integer,
                            .right = item(reply, 3).integer,
                            .bottom = item(reply, 4).integer};
  const auto picture =
      captureScreenBounds(bounds, parts_.temporaryDirectory, parts_.uuid(), *parts_.programs, deadline);
  try {
    expectOnScreen(tab.windowId);  // else the picture may be another's
  } catch (const PlatformError&) {
    std::error_code ignored;
    std::filesystem::remove(picture, ignored);
    throw;
  }
  return {.imagePath = picture};
}

void AppleScriptOperations::expectOnScreen(std::int64_t windowId) const {
  if (!isOnScreen(parts_.screenWindows(), windowId))
    throw PlatformError(scriptDomain, notOnScreen, "The tab is not on the screen.");
}

void AppleScriptOperations::focus(const TabAddress& tab, Deadline deadline) {
  call(deadline, scriptHandler::focusSession, tab.tty, scriptInteger(tab.windowId));
}

void AppleScriptOperations::cancel() noexcept {
  cancelled_ = true;
  parts_.script->cancel();
  parts_.programs->cancel();
}

void AppleScriptOperations::closeWindow(std::int64_t windowId) {
  call(Deadline::max(), scriptHandler::closeWindow, scriptInteger(windowId));
}

void AppleScriptOperations::requestTerminalAccess() {
  const auto status = parts_.script->consent(terminal, /*asksUser=*/true, Deadline::max());
  hasAsked_ = status != consentStatus::notRunning;
  if (status == consentStatus::notAsked) throw scriptError(status);  // the user let the question pass
  run(Deadline::max(), scriptHandler::bridgeStatus);
}

void AppleScriptOperations::requestSystemEventsAccess() {
  const auto ask = [this] {
    return parts_.script->consent(systemEvents, /*asksUser=*/true, Deadline::max());
  };
  auto status = ask();
  if (status == consentStatus::notRunning) parts_.start(systemEvents);
  for (int look = 0; status == consentStatus::notRunning && look < looksAtStart; ++look) {
    parts_.pause(timeBetweenLooks);
    status = ask();
  }
  if (status == consentStatus::notAsked) throw scriptError(status);
  run(Deadline::max(), scriptHandler::systemEventsStatus);
}

}  // namespace velmora
