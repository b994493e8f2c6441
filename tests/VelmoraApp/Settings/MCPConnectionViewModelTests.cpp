#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraApp/Settings/MCPConnectionViewModel.h"
#include "tests/VelmoraApp/ModelRows.h"

namespace velmora {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

constexpr const char* awkwardPath = "/opt/my \"own\" tools/한국어/velmora";

GuideContext contextWith(const std::string& helperPath, bool isThere = true) {
  return {.terminal = GuidedTerminal::tmux,
          .preferredLanguages = {},
          .installPath = {},
          .helperPath = helperPath,
          .helperIsThere = isThere};
}

JSONValue json(const QString& text) { return decodeJson<JSONValue>(text.toStdString()); }

TEST(MCPConnectionViewModel, WritesTheConfigurationsWithTheHelpersPath) {
  const MCPConnectionViewModel page(contextWith(awkwardPath));
  const JSONValue server = JSONObject{{"command", awkwardPath}};
  EXPECT_EQ(json(page.configuration()),
            JSONValue(JSONObject{{"mcpServers", JSONObject{{"terminal", server}}}}));
  EXPECT_EQ(json(page.openClawConfiguration()),
            JSONValue(JSONObject{{"mcp", JSONObject{{"servers", JSONObject{{"terminal", server}}}}}}));
}

TEST(MCPConnectionViewModel, WritesTheCommandsOfOpenClaw) {
  const MCPConnectionViewModel page(contextWith("/opt/my tools/velmora"));
  EXPECT_EQ(
      page.openClawCommands(),
      "openclaw mcp add terminal --command \"/opt/my tools/velmora\"\nopenclaw mcp doctor terminal --probe");
}

TEST(MCPConnectionViewModel, ShowsTheFormThatIsChosenEverywhere) {
  MCPConnectionViewModel page(contextWith("/opt/velmora"));
  EXPECT_FALSE(page.extended());
  const auto plain = page.configuration();
  EXPECT_FALSE(plain.contains("--extended"));
  page.setExtended(true);
  for (const auto& text : {page.configuration(), page.openClawConfiguration(), page.clientSnippet()})
    EXPECT_TRUE(text.contains("--extended")) << text.toStdString();
  EXPECT_EQ(page.openClawCommands(), "") << "they cannot ask for it";
  for (int index = 0; index < static_cast<int>(page.clientNames().size()); ++index) {
    page.setClientIndex(index);
    EXPECT_TRUE(page.clientSnippet().contains("--extended")) << page.clientNames()[index].toStdString();
  }
  page.setExtended(false);
  EXPECT_EQ(page.configuration(), plain);
}

TEST(MCPConnectionViewModel, SaysWhenTheHelperIsMissing) {
  EXPECT_TRUE(MCPConnectionViewModel(contextWith(awkwardPath, /*isThere=*/false)).helperMissing());
  EXPECT_FALSE(MCPConnectionViewModel(contextWith(awkwardPath)).helperMissing());
}

TEST(MCPConnectionViewModel, SaysWhereTheHelperIsTakenToBe) {
  auto context = contextWith(awkwardPath);
  EXPECT_EQ(
      MCPConnectionViewModel(context).caption(),
      "This configuration names the helper of the Velmora that is running now. No URL, port, or network authentication is used.");
  context.terminal = GuidedTerminal::terminalApp;
  EXPECT_EQ(
      MCPConnectionViewModel(context).caption(),
      "This configuration assumes Velmora.app is installed in /Applications. No URL, port, or network authentication is used.");
}

TEST(MCPConnectionViewModel, HasTheSnippetOfEveryClient) {
  MCPConnectionViewModel page(contextWith(awkwardPath));
  const auto names = testing::texts(page.clientNames());
  EXPECT_THAT(names, Contains("VS Code"));
  EXPECT_EQ(std::count(names.begin(), names.end(), "OpenClaw"), 1) << "not its commands too";
  for (int index = 0; index < static_cast<int>(names.size()); ++index) {
    page.setClientIndex(index);
    EXPECT_EQ(page.clientIndex(), index);
    EXPECT_FALSE(page.clientPlace().isEmpty()) << names[static_cast<std::size_t>(index)];
    EXPECT_THAT(page.clientSnippet().toStdString(), HasSubstr("한국어/velmora"));
  }
}

TEST(MCPConnectionViewModel, AClientThatDoesNotExistChangesNothing) {
  MCPConnectionViewModel page(contextWith(awkwardPath));
  page.setClientIndex(2);
  page.setClientIndex(-1);
  page.setClientIndex(static_cast<int>(page.clientNames().size()));
  EXPECT_EQ(page.clientIndex(), 2);
}

}  // namespace
}  // namespace velmora
