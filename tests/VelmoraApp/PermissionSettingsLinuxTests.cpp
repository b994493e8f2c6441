#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "VelmoraApp/Settings/PermissionSettings.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

PermissionSettingsRow rowFor(const BridgeStatus& status) {
  const auto settings = permissionSettings(status);
  EXPECT_THAT(settings.caption.toStdString(), HasSubstr("No system permission is needed"));
  EXPECT_EQ(settings.rows.size(), 1u);
  return settings.rows.at(0);
}

TEST(PermissionSettings, SayThatTmuxIsThere) {
  for (const auto state : {TerminalState::available, TerminalState::noWindows, TerminalState::notRunning}) {
    const auto row = rowFor({.terminalState = state, .automationPermission = AutomationPermission::granted});
    EXPECT_EQ(row.title, "tmux");
    EXPECT_FALSE(row.attention);
    EXPECT_FALSE(row.link);
    EXPECT_EQ(row.buttonTitle, "");
  }
}

TEST(PermissionSettings, SayWhatToDoWithoutTmux) {
  const StructuredError missing{.code = ErrorCode::terminalNotRunning,
                                .message = "tmux is not installed.",
                                .recoverySuggestion = "Install tmux 3.2 or newer."};
  const auto row = rowFor({.terminalState = TerminalState::unavailable, .lastError = missing});
  EXPECT_TRUE(row.attention);
  EXPECT_EQ(row.instruction, "tmux is not installed. Install tmux 3.2 or newer.");
}

TEST(PermissionSettings, SayWhatToDoWhenNothingMoreIsKnown) {
  const auto row = rowFor({.terminalState = TerminalState::unavailable});
  EXPECT_TRUE(row.attention);
  EXPECT_THAT(row.instruction.toStdString(), HasSubstr("Install tmux"));
}

TEST(PermissionSettings, SayWhatStandsInTheWay) {
  const StructuredError denied{.code = ErrorCode::automationPermissionDenied,
                               .message = "The folder of tmux is not safe.",
                               .recoverySuggestion = "Make it yours."};
  const auto row = rowFor({.terminalState = TerminalState::notRunning,
                           .automationPermission = AutomationPermission::denied,
                           .lastError = denied});
  EXPECT_TRUE(row.attention);
  EXPECT_EQ(row.instruction, "The folder of tmux is not safe. Make it yours.");
}

}  // namespace
}  // namespace velmora
