#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BridgeModels/Tools.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;

std::vector<ToolName> toolsWith(bool ToolTraits::*trait) {
  std::vector<ToolName> names;
  for (const auto& entry : enumCases<ToolName>) {
    if (toolTraits(entry.value).*trait) names.push_back(entry.value);
  }
  return names;
}

TEST(Tools, VisitingANameMeetsTheRowOfThatName) {
  for (const auto& entry : enumCases<ToolName>) {
    EXPECT_EQ(visitTool(entry.value, [](const auto& tool) { return tool.name; }), entry.value);
  }
}

TEST(Tools, ExactlyFourChangeTheTerminal) {
  EXPECT_THAT(
      toolsWith(&ToolTraits::changesTerminal),
      ElementsAre(ToolName::createSession, ToolName::sendCommand, ToolName::sendKey, ToolName::focusSession));
}

TEST(Tools, ThePauseComesFirstForThoseThatDoNotType) {
  EXPECT_THAT(toolsWith(&ToolTraits::pauseComesFirst),
              ElementsAre(ToolName::createSession, ToolName::focusSession));
}

TEST(Tools, CommandsAndOutputsAreSensitive) {
  EXPECT_THAT(toolsWith(&ToolTraits::sensitive), ElementsAre(ToolName::sendCommand, ToolName::readOutput));
}

}  // namespace
}  // namespace velmora
