#include "TerminalAutomation/AppleScript/AppleScriptOperations.h"

#include <limits>
#include <utility>

#include "TerminalAutomation/AppleScript/BrokenContract.h"
#include "TerminalAutomation/AppleScript/KeyCodes.h"

namespace velmora {

namespace {

constexpr auto scriptDomain = "Velmora.AppleScript";
constexpr std::size_t rowLength = 7;

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

template <std::size_t Arity, class... Arguments>
ScriptDescriptor AppleScriptOperations::call(Deadline deadline, const ScriptHandler<Arity>& handler,
                                             Arguments... arguments) {
  static_assert(sizeof...(Arguments) == Arity);
  if (cancelled_) {
    throw PlatformError("Velmora.Automation", platformErrorCode::userCancelled,
                        "The bridge is shutting down.");
  }
  if (std::chrono::steady_clock::now() >= deadline) {
    throw PlatformError("Velmora.Automation", platformErrorCode::timedOut,
                        "Terminal.app did not answer in time.");
  }
  auto reply =
      parts_.script->call(std::string(handler.name), {ScriptArgument(std::move(arguments))...}, deadline);
  if (const auto* failure = std::get_if<ScriptFailure>(&reply)) {
    throw PlatformError(scriptDomain, failure->number.value_or(platformErrorCode::scriptError),
                        "Terminal AppleScript operation failed.");
  }
  return std::get<ScriptDescriptor>(std::move(reply));
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
  if (!parts_.isRunning("com.apple.Terminal")) return {};
  const auto reply = call(deadline, scriptHandler::bridgeStatus);
  return {.running = reply.items.empty() || reply.items.front().boolean,
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
  call(deadline, scriptHandler::sendKey, virtualKeyCode(key), scriptInteger(repeatCount), tab.tty,
       scriptInteger(tab.windowId), allowBusy);
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
  const ScreenBounds bounds{.left = item(reply, 1).integer,
                            .top = item(reply, 2).integer,
                            .right = item(reply, 3).integer,
                            .bottom = item(reply, 4).integer};
  return {.imagePath = captureScreenBounds(bounds, parts_.temporaryDirectory, parts_.uuid(), *parts_.programs,
                                           deadline)};
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

void AppleScriptOperations::requestTerminalAccess() { call(Deadline::max(), scriptHandler::bridgeStatus); }

void AppleScriptOperations::requestSystemEventsAccess() {
  call(Deadline::max(), scriptHandler::systemEventsStatus);
}

}  // namespace velmora
