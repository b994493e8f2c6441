#include <gtest/gtest.h>

#include "VelmoraApp/Help/GuideContext.h"

namespace velmora {
namespace {

TEST(GuideContext, SpeaksOfTerminalAppAndOfTheUsualPlace) {
  const auto context = GuideContext::ofThisSystem();
  EXPECT_EQ(context.terminal, GuidedTerminal::terminalApp);
  EXPECT_EQ(context.installPath, "/Applications/Velmora.app");
  EXPECT_TRUE(context.connection.helperPath.ends_with("/Contents/Helpers/velmora"));
  EXPECT_FALSE(context.preferredLanguages.isEmpty());
}

}  // namespace
}  // namespace velmora
