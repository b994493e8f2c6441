#include <gtest/gtest.h>

#include "TerminalAutomation/AppleScript/ScreenWindows.h"

namespace velmora {
namespace {

constexpr std::int64_t menuBar = 24;
constexpr std::int64_t panel = 3;
const ScreenWindows desktop{{5, menuBar}, {6, panel}, {41, 0}, {42, 0}};

TEST(ScreenWindows, TheFirstOrdinaryWindowIsInFront) {
  EXPECT_TRUE(isFirstOnScreen(desktop, 41));
  EXPECT_FALSE(isFirstOnScreen(desktop, 42)) << "it lies behind another";
  EXPECT_FALSE(isFirstOnScreen(desktop, 5)) << "the menu bar is no window of a session";
  EXPECT_FALSE(isFirstOnScreen(desktop, 43));
}

TEST(ScreenWindows, WhatIsCoveredIsOnTheScreenAndWhatIsNotListedIsNot) {
  EXPECT_TRUE(isOnScreen(desktop, 41));
  EXPECT_TRUE(isOnScreen(desktop, 42));
  EXPECT_FALSE(isOnScreen(desktop, 43));
}

TEST(ScreenWindows, WithoutAWindowServerNothingIsThere) {
  EXPECT_FALSE(isOnScreen({}, 0));
  EXPECT_FALSE(isFirstOnScreen({}, 0));
}

}  // namespace
}  // namespace velmora
