// One filled-in value of each record, for golden files and round trips.
#pragma once

#include "BridgeModels/BridgeStatus.h"
#include "BridgeModels/MCPRequestRecord.h"
#include "BridgeModels/ToolPayloads.h"

namespace velmora::testing {

inline Uuid sampleId(char digit) {
  return *Uuid::parse(std::string(8, digit) + "-0000-4000-8000-" + std::string(12, digit));
}

inline SessionReference sampleReference() {
  return {sampleId('A'), "build — 한국어 👩‍👩‍👧", "/dev/ttys003"};
}

inline StructuredError sampleError() {
  return {.code = ErrorCode::sessionBusy,
          .message = "The Terminal session is busy.",
          .operation = "terminal_send_command",
          .session = sampleReference(),
          .retryable = true,
          .recoverySuggestion = "Wait for it \"or\" not."};
}

inline TerminalTabSnapshot sampleSnapshot() {
  return {.tty = "/dev/ttys003",
          .windowId = 9007199254740991,
          .windowIndex = 1,
          .tabIndex = 2,
          .title = "build — 한국어 👩‍👩‍👧",
          .busy = true,
          .selected = false};
}

inline TerminalSession sampleSession() {
  return {sampleId('A'),      sampleId('B'),   sampleSnapshot(),  SessionPermission::readOnly, true,
          Date{817000000.25}, Date{817000060}, Date{817000030.5}, SessionValidity::valid};
}

inline ClientIdentity sampleClient() {
  return {.connectionId = sampleId('C'),
          .name = "some client",
          .version = "1.2.3",
          .processId = -1,
          .effectiveUserId = 4294967295u,
          .connectedAt = Date{1},
          .lastSeenAt = Date{2}};
}

inline BridgeStatus sampleStatus() {
  return {.mcpState = MCPState::paused,
          .terminalState = TerminalState::available,
          .automationPermission = AutomationPermission::granted,
          .connectedClients = {sampleClient()},
          .windowCount = 3,
          .sessionCount = 4,
          .controllableSessionCount = 2,
          .lastRequestId = sampleId('D'),
          .lastError = sampleError(),
          .updatedAt = Date{817000000}};
}

inline MCPRequestRecord sampleRecord() {
  return {.requestId = sampleId('D'),
          .receivedAt = Date{817000000},
          .completedAt = Date{817000001},
          .client = {"some client", "1.2.3"},
          .toolName = ToolName::sendCommand,
          .sessionSnapshot = sampleReference(),
          .commandBody = "echo 'a\nb'",
          .commandSummary = "echo 'a",
          .status = RequestStatus::delivered,
          .durationMilliseconds = 1000,
          .outputCharacterCount = 12,
          .outputTruncated = false,
          .outputPreview = "a\nb",
          .error = sampleError()};
}

}  // namespace velmora::testing
