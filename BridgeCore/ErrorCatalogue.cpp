#include "BridgeCore/ErrorCatalogue.h"

#include "BridgeModels/ToolName.h"

namespace velmora::catalogue {

namespace {

constexpr const char* correctArguments = "Correct the request arguments and try again.";

std::string operationOf(ToolName tool) { return std::string(wireName(tool)); }

}  // namespace

StructuredError mcpPaused(std::string_view operation, const Session& session) {
  return {.code = ErrorCode::mcpPaused,
          .message = "MCP change operations are paused.",
          .operation = std::string(operation),
          .session = session,
          .retryable = true,
          .recoverySuggestion = "Resume MCP operations in Velmora, then retry."};
}

StructuredError terminalNotRunning(std::string_view operation, const Session& session) {
  return {.code = ErrorCode::terminalNotRunning,
          .message = "Terminal.app is not running.",
          .operation = std::string(operation),
          .session = session,
          .retryable = true,
          .recoverySuggestion = "Open Terminal.app or create a new managed session, then retry."};
}

StructuredError statusDeadlineExceeded() {
  return {.code = ErrorCode::terminalNotAvailable,
          .message = "Terminal.app did not respond within five seconds.",
          .operation = operationOf(ToolName::status),
          .retryable = true,
          .recoverySuggestion = "Verify Terminal.app is responsive, then retry."};
}

StructuredError automationPermissionDenied(std::string_view operation, const Session& session) {
  return {.code = ErrorCode::automationPermissionDenied,
          .message = "Terminal automation permission was denied.",
          .operation = std::string(operation),
          .session = session,
          .retryable = false,
          .recoverySuggestion = "Allow Terminal automation for Velmora in System Settings, then retry."};
}

StructuredError noSelectedTab() {
  return {.code = ErrorCode::noTerminalWindows,
          .message = "Terminal.app has no selected tab.",
          .operation = operationOf(ToolName::getActiveSession),
          .retryable = true,
          .recoverySuggestion = "Open a Terminal window and retry."};
}

StructuredError sessionNotFound(const Uuid& sessionId) {
  return {.code = ErrorCode::sessionNotFound,
          .message = "The requested Terminal session was not found.",
          .operation = "session_lookup",
          .session = SessionReference{.sessionId = sessionId},
          .retryable = false,
          .recoverySuggestion = "List sessions and select a current sessionId."};
}

StructuredError sessionStale(const SessionReference& session) {
  return {.code = ErrorCode::sessionStale,
          .message = "The Terminal session is no longer the registered tab.",
          .operation = "session_validate",
          .session = session,
          .retryable = false,
          .recoverySuggestion = "List sessions and use the newly issued sessionId."};
}

StructuredError ambiguousTTY() {
  return {.code = ErrorCode::sessionStale,
          .message = "Terminal returned an ambiguous or empty TTY identity.",
          .operation = operationOf(ToolName::listSessions),
          .retryable = true,
          .recoverySuggestion = "Refresh the session list after Terminal.app settles."};
}

StructuredError sessionNotAllowed(std::string_view operation, const SessionReference& session) {
  return {.code = ErrorCode::sessionNotAllowed,
          .message = "This Terminal session is not allowed for the requested operation.",
          .operation = std::string(operation),
          .session = session,
          .retryable = false,
          .recoverySuggestion = "Allow the session in Velmora or choose a managed session."};
}

StructuredError invalidArgument(const std::string& message, std::string_view operation,
                                const Session& session) {
  return {.code = ErrorCode::invalidArgument,
          .message = message,
          .operation = std::string(operation),
          .session = session,
          .retryable = false,
          .recoverySuggestion = correctArguments};
}

StructuredError undecodableArguments(std::string_view operation, const Session& session) {
  return invalidArgument("Tool arguments could not be decoded using the advertised schema.", operation,
                         session);
}

StructuredError automationFailed(std::string_view operation, const Session& session) {
  return {.code = ErrorCode::appleScriptExecutionFailed,
          .message = "Terminal.app could not complete the requested automation operation.",
          .operation = std::string(operation),
          .session = session,
          .retryable = true,
          .recoverySuggestion = "Check Terminal.app and automation permission, then retry."};
}

StructuredError outputUnavailable(const SessionReference& session) {
  return {.code = ErrorCode::outputUnavailable,
          .message = "Terminal output is unavailable.",
          .operation = operationOf(ToolName::readOutput),
          .session = session,
          .retryable = true,
          .recoverySuggestion = "Check the Terminal tab and retry with visible output."};
}

StructuredError outputTruncated(std::string_view operation, const SessionReference& session) {
  return {.code = ErrorCode::outputTruncated,
          .message = "The output exceeded the requested character limit.",
          .operation = std::string(operation),
          .session = session,
          .retryable = true,
          .recoverySuggestion = "Request a larger maximum up to 50000 characters if more context is needed."};
}

StructuredError screenCaptureUnavailable(const SessionReference& session) {
  return {
      .code = ErrorCode::screenCaptureUnavailable,
      .message = "Terminal screen capture is unavailable.",
      .operation = operationOf(ToolName::captureScreen),
      .session = session,
      .retryable = true,
      .recoverySuggestion =
          "Allow Screen Recording for Velmora in System Settings, keep the Terminal window visible, then retry."};
}

StructuredError sessionBusy(BusyInput input, const SessionReference& session) {
  const bool isCommand = input == BusyInput::command;
  return {.code = ErrorCode::sessionBusy,
          .message = "The Terminal session is busy.",
          .operation = operationOf(isCommand ? ToolName::sendCommand : ToolName::sendKey),
          .session = session,
          .retryable = true,
          .recoverySuggestion =
              std::string("Enable busy session input in Velmora settings only when you intend to send ") +
              (isCommand ? "input" : "keys") +
              " to the foreground process, or wait for the current process to finish and retry."};
}

}  // namespace velmora::catalogue
