#include "TerminalAutomation/AppleScript/AppleScriptOperations.h"

#include <limits>
#include <utility>

#include "TerminalAutomation/AppleScript/BrokenContract.h"
#include "TerminalAutomation/AppleScript/KeyCodes.h"
#include "TerminalAutomation/AppleScript/ScreenCaptureTool.h"

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
ScriptDescriptor AppleScriptOperations::call(const ScriptHandler<Arity>& handler, Arguments... arguments) {
  static_assert(sizeof...(Arguments) == Arity);
  auto reply = parts_.script->call(std::string(handler.name), {ScriptArgument(std::move(arguments))...});
  if (const auto* failure = std::get_if<ScriptFailure>(&reply)) {
    throw PlatformError(scriptDomain, failure->number.value_or(platformErrorCode::scriptError),
                        "Terminal AppleScript operation failed.");
  }
  return std::get<ScriptDescriptor>(std::move(reply));
}

void AppleScriptOperations::compile(const std::string& source) {
  if (!parts_.script->compile(source)) {
    throw PlatformError(scriptDomain, platformErrorCode::scriptError,
                        "Bundled Terminal AppleScript failed to compile.");
  }
}

TerminalRuntimeStatus AppleScriptOperations::status() {
  // Asked of the system, because an event to Terminal would launch it.
  if (!parts_.isRunning("com.apple.Terminal")) return {};
  const auto reply = call(scriptHandler::bridgeStatus);
  return {.running = reply.items.empty() || reply.items.front().boolean,
          .windowCount = item(reply, 2).integer,
          .permission = AutomationPermission::granted};
}

std::vector<TerminalTabSnapshot> AppleScriptOperations::listSessions() {
  const auto reply = call(scriptHandler::listSessions);
  if (reply.items.empty()) brokenContract("the script listed nothing at all");
  std::vector<TerminalTabSnapshot> snapshots;
  for (const auto& row : reply.items) {
    if (row.items.size() >= rowLength) snapshots.push_back(snapshotOf(row));
  }
  return snapshots;
}

TerminalTabSnapshot AppleScriptOperations::createWindow() {
  const auto row = call(scriptHandler::createWindow);
  if (row.items.size() < rowLength) throw PlatformError(scriptDomain, platformErrorCode::noSuchObject);
  return snapshotOf(row);
}

void AppleScriptOperations::sendCommand(const std::string& command, const std::string& tty,
                                        std::int64_t windowId, bool allowBusy) {
  call(scriptHandler::sendCommand, command, tty, scriptInteger(windowId), allowBusy);
}

void AppleScriptOperations::sendKey(TerminalKey key, std::int64_t repeatCount, const std::string& tty,
                                    std::int64_t windowId, bool allowBusy) {
  call(scriptHandler::sendKey, virtualKeyCode(key), scriptInteger(repeatCount), tty, scriptInteger(windowId),
       allowBusy);
}

TerminalOutput AppleScriptOperations::readOutput(OutputSource source, std::int64_t maxCharacters,
                                                 const std::string& tty, std::int64_t windowId) {
  const std::string sourceName = source == OutputSource::history ? "history" : "visible";
  const auto reply =
      call(scriptHandler::readOutput, sourceName, scriptInteger(maxCharacters), tty, scriptInteger(windowId));
  return {.text = item(reply, 1).text, .source = source, .originalCharacterCount = item(reply, 2).integer};
}

TerminalScreenCapture AppleScriptOperations::captureScreen(const std::string& tty, std::int64_t windowId) {
  const auto reply = call(scriptHandler::captureBounds, tty, scriptInteger(windowId));
  if (reply.items.size() < 4) throw PlatformError("Velmora.ScreenCapture", platformErrorCode::noSuchObject);
  const ScreenBounds bounds{.left = item(reply, 1).integer,
                            .top = item(reply, 2).integer,
                            .right = item(reply, 3).integer,
                            .bottom = item(reply, 4).integer};
  return {.imagePath =
              captureScreenBounds(bounds, parts_.temporaryDirectory, parts_.uuid(), *parts_.programs)};
}

void AppleScriptOperations::focus(const std::string& tty, std::int64_t windowId) {
  call(scriptHandler::focusSession, tty, scriptInteger(windowId));
}

void AppleScriptOperations::closeWindow(std::int64_t windowId) {
  call(scriptHandler::closeWindow, scriptInteger(windowId));
}

void AppleScriptOperations::requestTerminalAccess() { call(scriptHandler::bridgeStatus); }

void AppleScriptOperations::requestSystemEventsAccess() { call(scriptHandler::systemEventsStatus); }

}  // namespace velmora
