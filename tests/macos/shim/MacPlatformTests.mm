// The shims of MacPlatform/ and the look at the window server, over a system made up here.
#import <AppKit/AppKit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#import "FakeSystem.h"
#include "MacPlatform/Application.h"
#include "MacPlatform/Permissions.h"
#include "MacPlatform/StatusItem.h"
#include "MacPlatform/Updater.h"
#include "MacPlatform/UserDefaults.h"
#include "TerminalAutomation/AppleScript/ScreenWindows.h"
#include "TerminalAutomation/AppleScript/ScriptSource.h"

namespace velmora::mac {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MacPlatform : public ::testing::Test {
 protected:
  MacPlatform() { fakeSystem = {}; }
  ~MacPlatform() override { [pool_ release]; }

 private:
  NSAutoreleasePool* const pool_ = [NSAutoreleasePool new];
};

TEST_F(MacPlatform, KnowsTheBundleAndTheLanguages) {
  // GNUstep takes a program without a bundle to have one in its folder.
  const auto folder = std::filesystem::canonical("/proc/self/exe").parent_path();
  EXPECT_TRUE(applicationBundlePath().string().starts_with(folder.string()));
  EXPECT_FALSE(preferredLanguages().empty());
}

TEST_F(MacPlatform, TheScriptLiesAmongTheResources) {
  const std::filesystem::path resources = [[[NSBundle mainBundle] resourcePath] fileSystemRepresentation];
  const auto folder = resources / "Velmora_TerminalAutomation.bundle" / "Contents" / "Resources";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "TerminalBridge.applescript") << "-- 안녕\n";
  EXPECT_EQ(bundledScriptSource(), "-- 안녕\n");
}

TEST_F(MacPlatform, AnApplicationRunsWhenTheSystemSaysSoOnce) {
  fakeSystem.running = {"com.apple.Terminal"};
  EXPECT_TRUE(isApplicationRunning("com.apple.Terminal"));
  EXPECT_FALSE(isApplicationRunning("com.apple.terminal"));
  fakeSystem.misses = 1;
  EXPECT_TRUE(isApplicationRunning("com.apple.Terminal"));
  fakeSystem.misses = 2;
  EXPECT_FALSE(isApplicationRunning("com.apple.Terminal"));
}

TEST_F(MacPlatform, StartsAnApplicationBehindTheOthers) {
  fakeSystem.installed = {"com.apple.systemevents"};
  startInBackground("com.apple.systemevents");
  EXPECT_THAT(fakeSystem.done,
              ElementsAre("behind", "not remembered", "start file:///Applications/com.apple.systemevents"));
}

TEST_F(MacPlatform, AnApplicationThatIsNotThereIsNotStarted) {
  startInBackground("com.example.gone");
  EXPECT_THAT(fakeSystem.done, IsEmpty());
}

TEST_F(MacPlatform, StaysAwakeAndLetsTheMacSleep) {
  stayAwake("because");
  EXPECT_THAT(fakeSystem.done, ElementsAre("activity 15728639 because"));
}

TEST_F(MacPlatform, TheAboutPanelComesToTheFront) {
  showAboutPanel();
  EXPECT_THAT(fakeSystem.done, ElementsAre("activate", "about panel"));
}

TEST_F(MacPlatform, OpensAddresses) {
  const std::string pane = "x-apple.systempreferences:com.apple.preference.security?Privacy_Automation";
  EXPECT_TRUE(openURL(pane));
  EXPECT_THAT(fakeSystem.done, ElementsAre("open " + pane));
  fakeSystem.opensAddresses = false;
  EXPECT_FALSE(openURL(pane));
}

TEST_F(MacPlatform, AsksForAccessibilityWithTheSystemsDialogue) {
  EXPECT_FALSE(requestAccessibility());
  EXPECT_EQ(fakeSystem.trustOptions, (std::map<std::string, bool>{{"AXTrustedCheckOptionPrompt", true}}));
  EXPECT_FALSE(requestScreenCapture());
  fakeSystem.isTrusted = true;
  EXPECT_TRUE(requestAccessibility());
  EXPECT_TRUE(requestScreenCapture());
}

TEST_F(MacPlatform, ConsentIsAskedForEveryEventToOneApplication) {
  for (const int answer : {0, -1743, -1744, -600}) {
    fakeSystem.consent = answer;
    EXPECT_EQ(automationConsent("com.apple.Terminal", false), answer);
  }
  fakeSystem.done.clear();
  automationConsent("com.apple.systemevents", true);
  automationConsent("com.apple.Terminal", false);
  EXPECT_THAT(fakeSystem.done, ElementsAre("consent com.apple.systemevents?", "consent com.apple.Terminal"));
}

TEST_F(MacPlatform, ALoginItemIsOnOnlyWhenTheSystemHasEnabledIt) {
  for (const int status : {0, 1, 2, 3}) {
    fakeSystem.loginStatus = status;
    EXPECT_EQ(isLoginItemEnabled(), status == 1) << status;
  }
}

TEST_F(MacPlatform, RegistersALoginItemAndTakesItBack) {
  EXPECT_TRUE(setLoginItemEnabled(true));
  fakeSystem.loginStatus = 1;
  EXPECT_TRUE(setLoginItemEnabled(false));
  EXPECT_THAT(fakeSystem.done, ElementsAre("register", "unregister"));
  fakeSystem.changesLogin = false;
  EXPECT_FALSE(setLoginItemEnabled(true));
  EXPECT_FALSE(setLoginItemEnabled(false));
}

TEST_F(MacPlatform, ALoginItemThatIsNotThereIsNotTakenBack) {
  EXPECT_TRUE(setLoginItemEnabled(false));
  EXPECT_THAT(fakeSystem.done, IsEmpty());
}

TEST_F(MacPlatform, AStatusItemHasAMenuAndAToolTipUntilItsEnd) {
  NSMenu* const menu = [NSMenu new];
  {
    const auto item = makeStatusItem("안녕", menu);
    EXPECT_THAT(fakeSystem.done, ElementsAre("item of length -2", "menu", "tool tip 안녕"));
    fakeSystem.done.clear();
  }
  EXPECT_THAT(fakeSystem.done, ElementsAre("item removed"));
}

TEST_F(MacPlatform, TheImageOfAStatusItemIsAShapeOfTheMenuBarsSize) {
  const auto item = makeStatusItem("", [NSMenu new]);
  fakeSystem.done.clear();
  item->setImage(std::string("\x89PNG\0\r\n", 7));
  EXPECT_THAT(fakeSystem.done, ElementsAre("image of 7 bytes", "of 18 by 18 points", "a shape", "shown"));
}

TEST_F(MacPlatform, TheUpdaterKeepsTheChoiceAndKnowsTheLastLook) {
  const auto updater = makeUpdater();
  updater->checkForUpdates();
  EXPECT_THAT(fakeSystem.done, ElementsAre("updater started", "look for updates"));
  EXPECT_FALSE(updater->automaticallyChecksForUpdates());
  EXPECT_EQ(updater->lastUpdateCheckDate(), std::nullopt);
  updater->setAutomaticallyChecksForUpdates(true);
  EXPECT_TRUE(updater->automaticallyChecksForUpdates());
  EXPECT_EQ(updater->lastUpdateCheckDate()->secondsSinceReferenceDate, 42.5);
  updater->setAutomaticallyChecksForUpdates(false);
}

TEST_F(MacPlatform, UserDefaultsKeepTheirKind) {
  EXPECT_EQ(boolDefault("flag"), std::nullopt);
  EXPECT_EQ(textDefault("text"), std::nullopt);
  for (const bool value : {false, true}) {
    setBoolDefault("flag", value);
    EXPECT_EQ(boolDefault("flag"), value);
  }
  setTextDefault("text", "안녕 😀");
  EXPECT_EQ(textDefault("text"), "안녕 😀");
}

TEST_F(MacPlatform, TheWindowServerIsAskedForNumbersAndLayersInOrder) {
  fakeSystem.windows = {{24, 25}, {41, 0}, {1, 0}};
  const auto windows = systemScreenWindows();
  ASSERT_EQ(windows.size(), 3u);
  EXPECT_EQ(windows[0].number, 24);
  EXPECT_EQ(windows[0].layer, 25);
  EXPECT_TRUE(isFirstOnScreen(windows, 41));
  EXPECT_THAT(fakeSystem.done, ElementsAre("windows 17 0"));
  EXPECT_EQ(fakeSystem.listsKept, 0);
}

TEST_F(MacPlatform, WithoutAWindowServerThereAreNoWindows) {
  fakeSystem.hasWindowServer = false;
  EXPECT_TRUE(systemScreenWindows().empty());
  EXPECT_EQ(fakeSystem.listsKept, 0);
}

}  // namespace
}  // namespace velmora::mac
