#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "VelmoraApp/Onboarding/OnboardingPages.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(OnboardingPages, ForTerminalAppAreWordForWord) {
  const auto& pages = onboardingPages(GuidedTerminal::terminalApp);
  EXPECT_STREQ(pages[0].title, "Velmora Bridge");
  EXPECT_STREQ(pages[0].text,
               "Commands run in Apple's Terminal.app. This app does not create a PTY, render a terminal, or "
               "inspect shell internals.");
  EXPECT_STREQ(pages[1].title, "Terminal automation");
  EXPECT_EQ(pages[1].symbol, "checkmark.shield");
  EXPECT_STREQ(pages[1].text,
               "macOS permission is used only to read official Terminal scripting properties and deliver "
               "commands to explicitly identified sessions.");
  EXPECT_STREQ(pages[2].title, "Session policy");
  EXPECT_EQ(pages[2].symbol, "lock.shield");
  EXPECT_STREQ(pages[2].text, "");
  EXPECT_STREQ(pages[3].title, "Local MCP connection");
  EXPECT_STREQ(
      pages[3].text,
      "Configure your MCP client to launch the bundled velmora helper over stdio. No network port is "
      "opened.");
}

TEST(OnboardingPages, WithTmuxNeverSpeakOfMacOSAndSayAsMuch) {
  const auto& others = onboardingPages(GuidedTerminal::terminalApp);
  const auto& pages = onboardingPages(GuidedTerminal::tmux);
  for (std::size_t index = 0; index < pages.size(); ++index) {
    for (const auto* word : {"macOS", "Apple", "Terminal", "System Settings"}) {
      EXPECT_THAT(std::string(pages[index].title), Not(HasSubstr(word)));
      EXPECT_THAT(std::string(pages[index].text), Not(HasSubstr(word)));
    }
    EXPECT_STRNE(pages[index].title, "");
    EXPECT_EQ(std::string(pages[index].text).empty(), std::string(others[index].text).empty());
  }
}

TEST(OnboardingPages, StandInTheOrderOfTheSteps) {
  for (const auto terminal : {GuidedTerminal::terminalApp, GuidedTerminal::tmux}) {
    const auto& pages = onboardingPages(terminal);
    for (std::size_t index = 0; index < pages.size(); ++index) {
      EXPECT_EQ(pages[index].step, static_cast<OnboardingStep>(index));
      EXPECT_FALSE(pages[index].symbol.empty());
    }
  }
}

}  // namespace
}  // namespace velmora
