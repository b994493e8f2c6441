#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "VelmoraApp/Settings/PermissionSettings.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

PermissionSettingsRow rowFor(const BridgeStatus& status) {
  const auto settings = permissionSettings(GuidedTerminal::tmux, status);
  EXPECT_THAT(settings.caption.toStdString(), HasSubstr("No system permission is needed"));
  EXPECT_EQ(settings.rows.size(), 1u);
  return settings.rows.at(0);
}

TEST(PermissionSettingsForTmux, SayThatTmuxIsThere) {
  for (const auto state : {TerminalState::available, TerminalState::noWindows, TerminalState::notRunning}) {
    const auto row = rowFor({.terminalState = state, .automationPermission = AutomationPermission::granted});
    EXPECT_EQ(row.title, "tmux");
    EXPECT_FALSE(row.attention);
    EXPECT_FALSE(row.link);
    EXPECT_EQ(row.buttonTitle, "");
  }
}

TEST(PermissionSettingsForTmux, SayWhatToDoWithoutTmux) {
  const StructuredError missing{.code = ErrorCode::terminalNotRunning,
                                .message = "tmux is not installed.",
                                .recoverySuggestion = "Install tmux 3.2 or newer."};
  const auto row = rowFor({.terminalState = TerminalState::unavailable, .lastError = missing});
  EXPECT_TRUE(row.attention);
  EXPECT_EQ(row.instruction, "tmux is not installed. Install tmux 3.2 or newer.");
}

TEST(PermissionSettingsForTmux, SayWhatToDoWhenNothingMoreIsKnown) {
  const auto row = rowFor({.terminalState = TerminalState::unavailable});
  EXPECT_TRUE(row.attention);
  EXPECT_THAT(row.instruction.toStdString(), HasSubstr("Install tmux"));
}

TEST(PermissionSettingsForTmux, SayWhatStandsInTheWay) {
  const StructuredError denied{.code = ErrorCode::automationPermissionDenied,
                               .message = "The folder of tmux is not safe.",
                               .recoverySuggestion = "Make it yours."};
  const auto row = rowFor({.terminalState = TerminalState::notRunning,
                           .automationPermission = AutomationPermission::denied,
                           .lastError = denied});
  EXPECT_TRUE(row.attention);
  EXPECT_EQ(row.instruction, "The folder of tmux is not safe. Make it yours.");
}

TEST(PermissionSettingsForTerminalApp, NameTheThreePermissionsOfMacOS) {
  const auto settings = permissionSettings(GuidedTerminal::terminalApp, {});
  EXPECT_EQ(
      settings.caption,
      "Only these macOS Privacy & Security permissions are needed. After opening each panel, enable the "
      "item named Velmora unless the note says otherwise.");
  ASSERT_EQ(settings.rows.size(), 3u);
  EXPECT_EQ(settings.rows[0].title, "Accessibility");
  EXPECT_EQ(settings.rows[0].icon, "figure.wave");
  EXPECT_EQ(
      settings.rows[0].instruction,
      "Enable Velmora. This lets the app deliver special keys such as arrows, Tab, Return, and Escape.");
  EXPECT_EQ(settings.rows[1].title, "Automation");
  EXPECT_EQ(settings.rows[1].icon, "terminal");
  EXPECT_EQ(settings.rows[1].instruction,
            "Find Velmora, then enable both Terminal and System Events. This lets the app control Terminal "
            "sessions and send special keys.");
  EXPECT_EQ(settings.rows[2].title, "Screen Recording");
  EXPECT_EQ(settings.rows[2].icon, "camera.viewfinder");
  EXPECT_EQ(settings.rows[2].instruction,
            "Enable Velmora. This is only needed when using terminal_capture_screen to capture a Terminal "
            "window.");
  for (const auto& row : settings.rows) EXPECT_FALSE(row.buttonTitle.isEmpty() || row.attention);
}

TEST(PermissionSettingsForTerminalApp, EachOpensItsPane) {
  const auto rows = permissionSettings(GuidedTerminal::terminalApp, {}).rows;
  const char* const urls[] = {
      "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility",
      "x-apple.systempreferences:com.apple.preference.security?Privacy_Automation",
      "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"};
  ASSERT_EQ(rows.size(), std::size(urls));
  for (std::size_t row = 0; row < rows.size(); ++row) {
    ASSERT_TRUE(rows[row].link);
    EXPECT_STREQ(urlOf(*rows[row].link), urls[row]);
  }
}

}  // namespace
}  // namespace velmora
