// What the offline application shows: made up, always the same, and named by what it is good for.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "BridgeModels/MCPRequestRecord.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "tests/support/FakeTerminal.h"

namespace velmora::testing {

struct Scenario {
  std::vector<TerminalTabSnapshot> tabs{};
  std::vector<SessionPermission> permissions{};  ///< Of the tabs, in their order; the rest stay managed.
  std::vector<MCPRequestRecord> records{};       ///< Oldest first. Their targets are the tabs, by number.
  bool paused = false;
  bool denied = false;       ///< The system refuses automation.
  bool firstRun = false;     ///< The introduction is due.
  bool terminalApp = false;  ///< The texts speak of macOS.
  bool otherBridge = false;  ///< This program itself serves already.
  bool blockedSocket = false;
  bool keepsTexts = false;  ///< The settings keep what was typed and read.
};

/// "full", "empty", "paused", "denied", "long" (titles and texts that fit nowhere), "many" (9,990 records,
/// close to the most that are kept, and 500 sessions), "macOS" (its texts), "firstRun", "firstRunMacOS",
/// "other" (another bridge serves), "deaf" (nothing can be served), "kept" (the full one, whose settings keep
/// the texts that it shows). Throws std::invalid_argument for any other name.
Scenario scenario(const std::string& name);

/// The time at which every scenario plays.
Date scenarioTime();

}  // namespace velmora::testing
