#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/ErrorCode.h"
#include "BridgeModels/ToolInputs.h"
#include "BridgeModels/ToolName.h"
#include "BridgeModels/WireNames.h"

namespace velmora {
namespace {

template <class Enum>
std::vector<std::string> namesOf() {
  std::vector<std::string> names;
  for (const auto& entry : enumCases<Enum>) names.emplace_back(entry.wireName);
  return names;
}

using Names = std::vector<std::string>;

TEST(WireNames, ListEveryCaseInOrder) {
  EXPECT_EQ(namesOf<MCPState>(), (Names{"active", "paused"}));
  EXPECT_EQ(namesOf<TerminalState>(), (Names{"notRunning", "noWindows", "available", "unavailable"}));
  EXPECT_EQ(namesOf<AutomationPermission>(), (Names{"unknown", "granted", "denied"}));
  EXPECT_EQ(namesOf<SessionPermission>(), (Names{"managed", "allowed", "readOnly", "blocked"}));
  EXPECT_EQ(namesOf<SessionValidity>(), (Names{"valid", "stale", "closed"}));
  EXPECT_EQ(namesOf<SessionPolicy>(), (Names{"safe", "selective"}));
  EXPECT_EQ(namesOf<OutputSource>(), (Names{"visible", "history"}));
  EXPECT_EQ(namesOf<RequestStatus>(), (Names{"received", "processing", "delivered", "readComplete",
                                             "rejected", "failed", "cancelled"}));
  EXPECT_EQ(namesOf<SessionCreationKind>(), (Names{"window", "tab"}));
  EXPECT_EQ(namesOf<TerminalKey>(),
            (Names{"upArrow", "downArrow", "leftArrow", "rightArrow", "return", "escape", "tab", "delete",
                   "forwardDelete", "home", "end", "pageUp", "pageDown"}));
}

TEST(WireNames, ErrorCodesTravelInUpperCase) {
  EXPECT_EQ(
      namesOf<ErrorCode>(),
      (Names{"MCP_PAUSED", "BRIDGE_UNAVAILABLE", "UNSUPPORTED_MACOS_VERSION", "TERMINAL_NOT_RUNNING",
             "TERMINAL_NOT_AVAILABLE", "AUTOMATION_PERMISSION_DENIED", "NO_TERMINAL_WINDOWS",
             "SESSION_NOT_FOUND", "SESSION_STALE", "SESSION_BUSY", "SESSION_NOT_ALLOWED", "INVALID_ARGUMENT",
             "APPLESCRIPT_EXECUTION_FAILED", "OUTPUT_UNAVAILABLE", "OUTPUT_TRUNCATED",
             "SCREEN_CAPTURE_UNAVAILABLE", "HISTORY_STORAGE_FAILED", "INTERNAL_ERROR"}));
  EXPECT_EQ(fromWireName<ErrorCode>("mcpPaused"), std::nullopt);
  EXPECT_EQ(fromWireName<ErrorCode>("MCP_PAUSED"), ErrorCode::mcpPaused);
}

TEST(WireNames, ToolsTravelInSnakeCase) {
  EXPECT_EQ(namesOf<ToolName>(),
            (Names{"terminal_status", "terminal_list_sessions", "terminal_get_active_session",
                   "terminal_create_session", "terminal_send_command", "terminal_send_key",
                   "terminal_read_output", "terminal_capture_screen", "terminal_focus_session"}));
}

TEST(WireNames, KeywordsLoseTheirUnderscoreOnTheWireOnly) {
  EXPECT_EQ(wireName(TerminalKey::return_), "return");
  EXPECT_EQ(fromWireName<TerminalKey>("delete"), TerminalKey::delete_);
  EXPECT_EQ(fromWireName<TerminalKey>("delete_"), std::nullopt);
}

}  // namespace
}  // namespace velmora
