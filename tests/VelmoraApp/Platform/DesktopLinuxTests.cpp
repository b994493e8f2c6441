#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <filesystem>

#include "VelmoraApp/Platform/Desktop.h"
#include "tests/support/FakeTerminal.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class DesktopTest : public ::testing::Test {
 protected:
  std::unique_ptr<Desktop> desktop() const { return makeDesktop(environment); }

  const TemporaryDirectory home;
  Environment environment{{"HOME", home.path().string()}};
};

TEST_F(DesktopTest, SpeaksOfTmuxAndOfTheRunningApplication) {
  const auto context = desktop()->guideContext();
  EXPECT_EQ(context.terminal, GuidedTerminal::tmux);
  EXPECT_EQ(context.installPath, QCoreApplication::applicationFilePath());
  EXPECT_EQ(context.helperPath, QCoreApplication::applicationDirPath().toStdString() + "/velmora");
  EXPECT_EQ(context.helperIsThere, std::filesystem::exists(context.helperPath));
  EXPECT_FALSE(context.preferredLanguages.isEmpty());
}

TEST_F(DesktopTest, KeepsUserDefaultsWhereTheSystemKeepsConfiguration) {
  desktop()->userDefaults().set("menuBarEnabled", false);
  EXPECT_EQ(testing::contentOf(home / ".config/Velmora/Velmora.conf"), "[General]\nmenuBarEnabled=false\n");
  environment["XDG_CONFIG_HOME"] = (home / "config").string();
  desktop()->userDefaults().set("menuBarEnabled", true);
  EXPECT_EQ(testing::contentOf(home / "config/Velmora/Velmora.conf"), "[General]\nmenuBarEnabled=true\n");
}

TEST_F(DesktopTest, CannotBeWithoutAHome) {
  EXPECT_THROW(makeDesktop({}), std::runtime_error);
  EXPECT_THROW(makeDesktop({{"HOME", "relative"}}), std::runtime_error);
}

TEST_F(DesktopTest, StartsThisProgramAtLogin) {
  const auto system = desktop();
  EXPECT_FALSE(system->startsAtLogin());
  system->setStartsAtLogin(true);
  EXPECT_TRUE(system->startsAtLogin());
  EXPECT_TRUE(desktop()->startsAtLogin());
  system->setStartsAtLogin(false);
  EXPECT_FALSE(desktop()->startsAtLogin());
}

TEST_F(DesktopTest, FollowsAProgramThatMovedBetweenTwoStarts) {
  desktop()->setStartsAtLogin(true);
  const auto file = home / ".config/autostart/app.velmora.Velmora.desktop";
  auto entry = testing::contentOf(file);
  const auto program = QCoreApplication::applicationDirPath().toStdString() + "/";
  for (auto at = entry.find(program); at != std::string::npos; at = entry.find(program)) {
    entry.replace(at, program.size(), "/old/place/");
  }
  testing::writeFile(file, entry);
  EXPECT_TRUE(desktop()->startsAtLogin());
}

TEST_F(DesktopTest, NeedsNoPermissionAndHasNoPanelsOfItsOwn) {
  const auto system = desktop();
  const auto prompter = system->permissionPrompter();
  EXPECT_TRUE(prompter.requestAccessibility());
  EXPECT_TRUE(prompter.requestScreenCapture());
  testing::FakeTerminal terminal;
  prompter.requestTerminalAutomation(terminal);
  prompter.requestSystemEventsAutomation(terminal);
  EXPECT_TRUE(terminal.calls().empty());
  EXPECT_FALSE(system->showAboutPanel());
}

TEST_F(DesktopTest, AsksForNoUpdatesAtTheStartUnlessTheUserChoseIt) {
  const auto system = desktop();
  EXPECT_FALSE(system->updatesFromTheStart());
  system->userDefaults().set("automaticallyChecksForUpdates", true);
  EXPECT_TRUE(system->updatesFromTheStart());
}

}  // namespace
}  // namespace velmora
