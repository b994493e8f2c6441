// The kinds of failure that a client can be told of.
#pragma once

#include "BridgeModels/WireNames.h"

namespace velmora {

enum class ErrorCode {
  mcpPaused,
  bridgeUnavailable,
  unsupportedMacOSVersion,
  terminalNotRunning,
  terminalNotAvailable,
  automationPermissionDenied,
  noTerminalWindows,
  sessionNotFound,
  sessionStale,
  sessionBusy,
  sessionNotAllowed,
  invalidArgument,
  appleScriptExecutionFailed,
  outputUnavailable,
  outputTruncated,
  screenCaptureUnavailable,
  historyStorageFailed,
  internalError,
};

template <>
inline constexpr auto enumCases<ErrorCode> = std::to_array<EnumCase<ErrorCode>>({
    {ErrorCode::mcpPaused, "MCP_PAUSED"},
    {ErrorCode::bridgeUnavailable, "BRIDGE_UNAVAILABLE"},
    {ErrorCode::unsupportedMacOSVersion, "UNSUPPORTED_MACOS_VERSION"},
    {ErrorCode::terminalNotRunning, "TERMINAL_NOT_RUNNING"},
    {ErrorCode::terminalNotAvailable, "TERMINAL_NOT_AVAILABLE"},
    {ErrorCode::automationPermissionDenied, "AUTOMATION_PERMISSION_DENIED"},
    {ErrorCode::noTerminalWindows, "NO_TERMINAL_WINDOWS"},
    {ErrorCode::sessionNotFound, "SESSION_NOT_FOUND"},
    {ErrorCode::sessionStale, "SESSION_STALE"},
    {ErrorCode::sessionBusy, "SESSION_BUSY"},
    {ErrorCode::sessionNotAllowed, "SESSION_NOT_ALLOWED"},
    {ErrorCode::invalidArgument, "INVALID_ARGUMENT"},
    {ErrorCode::appleScriptExecutionFailed, "APPLESCRIPT_EXECUTION_FAILED"},
    {ErrorCode::outputUnavailable, "OUTPUT_UNAVAILABLE"},
    {ErrorCode::outputTruncated, "OUTPUT_TRUNCATED"},
    {ErrorCode::screenCaptureUnavailable, "SCREEN_CAPTURE_UNAVAILABLE"},
    {ErrorCode::historyStorageFailed, "HISTORY_STORAGE_FAILED"},
    {ErrorCode::internalError, "INTERNAL_ERROR"},
});

}  // namespace velmora
