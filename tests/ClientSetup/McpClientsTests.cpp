#include <gmock/gmock.h>

#include <set>

#include "BridgeModels/Json/JsonReader.h"
#include "ClientSetup/McpClients.h"
#include "tests/support/ChildProgram.h"

namespace velmora {
namespace {

constexpr const char* plainPath = "/opt/Velmora/bin/velmora";
const std::string awkwardPath = "/My \"Apps\"/back\\slash/$HOME 'x'/한국어/velmora";

std::string snippet(std::string_view id, std::string_view path) {
  const auto* const client = findMcpClient(id);
  return client == nullptr ? "no such client" : snippetFor(*client, path);
}

JSONValue entryJson(std::string_view id) { return decodeJson<JSONValue>(snippet(id, awkwardPath)); }

std::string printed(std::vector<std::string> command, const std::string& input) {
  testing::ChildProgram program(std::move(command), {{"PATH", "/usr/bin:/bin"}});
  program.write(input);
  program.closeInput();
  return program.restOfOutput();
}

// The words of each command that a shell would run, one a line; `program` stands for the client's own.
std::string commandsIn(const std::string& shellLines, const std::string& program) {
  return printed({"bash", "--norc"}, program + "() { printf '<%s>' \"$@\"; echo; }\n" + shellLines + "\n");
}

TEST(McpClients, AreTheNineThatPeopleAskFor) {
  std::vector<std::string> names;
  for (const auto& client : mcpClients()) names.emplace_back(client.name);
  EXPECT_THAT(names, ::testing::IsSupersetOf({"Claude Desktop", "Claude Code", "Cursor", "VS Code", "Codex",
                                              "Gemini CLI", "Zed", "opencode", "OpenClaw"}));
}

TEST(McpClients, AreFoundByIdsThatAreWordsOfTheirOwn) {
  std::set<std::string_view> ids;
  for (const auto& client : mcpClients()) {
    EXPECT_THAT(std::string(client.id), ::testing::MatchesRegex("[a-z]+(-[a-z]+)*"));
    EXPECT_TRUE(ids.insert(client.id).second) << client.id;
    EXPECT_EQ(findMcpClient(client.id), &client);
    EXPECT_THAT(std::string(client.place), ::testing::EndsWith("."));
  }
  EXPECT_EQ(findMcpClient("Cursor"), nullptr);
  EXPECT_EQ(findMcpClient(""), nullptr);
}

TEST(McpClients, GiveTheShapeThatEachReadsJsonIn) {
  const JSONObject command{{"command", awkwardPath}};
  const JSONObject servers{{"terminal", command}};
  for (const auto* id : {"claude-desktop", "cursor", "gemini-cli"}) {
    EXPECT_EQ(entryJson(id), JSONValue(JSONObject{{"mcpServers", servers}})) << id;
  }
  EXPECT_EQ(entryJson("openclaw"), JSONValue(JSONObject{{"mcp", JSONObject{{"servers", servers}}}}));
  EXPECT_EQ(
      entryJson("vscode"),
      JSONValue(JSONObject{
          {"servers", JSONObject{{"terminal", JSONObject{{"type", "stdio"}, {"command", awkwardPath}}}}}}));
  EXPECT_EQ(entryJson("zed"),
            JSONValue(JSONObject{
                {"context_servers",
                 JSONObject{{"terminal", JSONObject{{"command", awkwardPath}, {"args", JSONArray{}}}}}}}));
  EXPECT_EQ(entryJson("opencode"),
            JSONValue(JSONObject{
                {"mcp", JSONObject{{"terminal",
                                    JSONObject{{"type", "local"}, {"command", JSONArray{awkwardPath}}}}}}}));
}

TEST(McpClients, PrintJsonOverSeveralLinesForPeopleToMerge) {
  EXPECT_EQ(snippet("cursor", plainPath), R"({
  "mcpServers": {
    "terminal": {
      "command": "/opt/Velmora/bin/velmora"
    }
  }
})");
}

TEST(McpClients, GiveCodexATableThatATomlReaderReads) {
  EXPECT_EQ(snippet("codex", plainPath), "[mcp_servers.terminal]\ncommand = \"/opt/Velmora/bin/velmora\"");
  const auto read = printed(
      {"python3", "-c",
       "import json, sys, tomllib; print(json.dumps(tomllib.loads(sys.stdin.buffer.read().decode())))"},
      snippet("codex", awkwardPath));
  EXPECT_EQ(
      decodeJson<JSONValue>(read),
      JSONValue(JSONObject{{"mcp_servers", JSONObject{{"terminal", JSONObject{{"command", awkwardPath}}}}}}));
}

TEST(McpClients, GiveOpenClawTheTwoCommandsOfItsOwn) {
  EXPECT_EQ(snippet("openclaw-cli", plainPath),
            "openclaw mcp add terminal --command \"/opt/Velmora/bin/velmora\"\n"
            "openclaw mcp doctor terminal --probe");
  EXPECT_EQ(commandsIn(snippet("openclaw-cli", awkwardPath), "openclaw"),
            "<mcp><add><terminal><--command><" + awkwardPath +
                ">\n"
                "<mcp><doctor><terminal><--probe>\n");
}

TEST(McpClients, GiveClaudeCodeACommandForAllProjects) {
  EXPECT_EQ(snippet("claude-code", plainPath),
            "claude mcp add --scope user terminal -- \"/opt/Velmora/bin/velmora\"");
  EXPECT_EQ(commandsIn(snippet("claude-code", awkwardPath), "claude"),
            "<mcp><add><--scope><user><terminal><--><" + awkwardPath + ">\n");
}

TEST(McpClients, AskForTheExtendedFormWhereTheirLanguageCan) {
  for (const auto& client : mcpClients()) {
    if (client.id == "openclaw-cli") {
      EXPECT_THROW(snippetFor(client, plainPath, ToolForm::extended), std::invalid_argument);
      continue;
    }
    const auto extended = snippetFor(client, plainPath, ToolForm::extended);
    EXPECT_NE(extended.find("--extended"), std::string::npos) << client.id;
    EXPECT_EQ(snippetFor(client, plainPath).find("--extended"), std::string::npos) << client.id;
  }
  EXPECT_EQ(snippetFor(*findMcpClient("codex"), plainPath, ToolForm::extended),
            "[mcp_servers.terminal]\ncommand = \"/opt/Velmora/bin/velmora\"\nargs = [\"--extended\"]");
  EXPECT_EQ(snippetFor(*findMcpClient("claude-code"), plainPath, ToolForm::extended),
            "claude mcp add --scope user terminal -- \"/opt/Velmora/bin/velmora\" --extended");
}

TEST(McpClients, RefuseAPathThatNoConfigurationCanHold) {
  for (const auto& client : mcpClients()) {
    EXPECT_THROW(snippetFor(client, "/opt/\xFF/velmora"), std::invalid_argument) << client.id;
  }
}

}  // namespace
}  // namespace velmora
