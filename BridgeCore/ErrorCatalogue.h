// The bridge's own errors, one function a condition, so that a client reads the same words for the same
// situation wherever it arose. Pure functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "BridgeModels/StructuredError.h"

namespace velmora::catalogue {

using Session = std::optional<SessionReference>;

StructuredError mcpPaused(std::string_view operation, const Session& session);
StructuredError terminalNotRunning(std::string_view operation, const Session& session);
StructuredError statusDeadlineExceeded();
StructuredError automationPermissionDenied(std::string_view operation, const Session& session);
StructuredError noSelectedTab();
StructuredError sessionNotFound(const Uuid& sessionId);
StructuredError sessionStale(const SessionReference& session);
StructuredError ambiguousTTY();
StructuredError sessionNotAllowed(std::string_view operation, const SessionReference& session);
StructuredError invalidArgument(const std::string& message, std::string_view operation,
                                const Session& session);
StructuredError undecodableArguments(std::string_view operation, const Session& session);
StructuredError automationFailed(std::string_view operation, const Session& session);
StructuredError outputUnavailable(const SessionReference& session);
StructuredError outputTruncated(std::string_view operation, const SessionReference& session);
StructuredError screenCaptureUnavailable(const SessionReference& session);

/// What the client meant to send to a busy session; the suggestion names it.
enum class BusyInput { command, keys };
StructuredError sessionBusy(BusyInput input, const SessionReference& session);

}  // namespace velmora::catalogue
