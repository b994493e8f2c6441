#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include "VelmoraApp/Help/GuideContext.h"

namespace velmora {
namespace {

TEST(GuideContext, SpeaksOfTmuxAndOfTheRunningApplication) {
  const auto context = GuideContext::ofThisSystem();
  EXPECT_EQ(context.terminal, GuidedTerminal::tmux);
  const QFileInfo program(context.installPath);
  EXPECT_EQ(program.fileName(), "VelmoraViewsTests");
  EXPECT_TRUE(program.isExecutable());
  EXPECT_EQ(context.connection.helperPath, program.dir().filePath("velmora").toStdString());
  EXPECT_FALSE(context.preferredLanguages.isEmpty());
}

}  // namespace
}  // namespace velmora
