#include <gtest/gtest.h>

#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {
namespace {

TEST(Desktop, SpeaksOfTerminalAppAndOfTheUsualPlace) {
  const auto context = makeDesktop({})->guideContext();
  EXPECT_EQ(context.terminal, GuidedTerminal::terminalApp);
  EXPECT_EQ(context.installPath, "/Applications/Velmora.app");
  EXPECT_TRUE(context.helperPath.ends_with("/Contents/Helpers/velmora"));
  EXPECT_FALSE(context.preferredLanguages.isEmpty());
}

}  // namespace
}  // namespace velmora
