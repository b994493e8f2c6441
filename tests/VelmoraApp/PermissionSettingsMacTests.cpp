#include <gtest/gtest.h>

#include "VelmoraApp/Settings/PermissionSettings.h"
#include "VelmoraApp/Settings/SettingsTexts.h"

namespace velmora {
namespace {

TEST(PermissionSettings, NameTheThreePermissionsOfMacOS) {
  const auto settings = permissionSettings({});
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

TEST(PermissionSettings, EachOpensItsPane) {
  const auto rows = permissionSettings({}).rows;
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

TEST(PermissionSettings, TheConnectionCaptionNamesTheApplicationsFolder) {
  EXPECT_EQ(connectionCaption(),
            "This configuration assumes Velmora.app is installed in /Applications. No URL, port, or network "
            "authentication is used.");
}

}  // namespace
}  // namespace velmora
