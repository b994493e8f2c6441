#include <gmock/gmock.h>

#include "ClientSetup/ClientFile.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class ClientFileTest : public ::testing::Test {
 protected:
  std::string placeOf(const char* client) {
    const auto file = clientFile(*findMcpClient(client), environment, files);
    return file ? file->path.lexically_normal().string() : "nowhere";
  }

  Environment environment{{"HOME", "/home/ann"}};
  PosixFileSystem files;
};

TEST_F(ClientFileTest, IsInTheHome) {
  EXPECT_EQ(placeOf("claude-code"), "/home/ann/.claude.json");
  EXPECT_EQ(placeOf("cursor"), "/home/ann/.cursor/mcp.json");
  EXPECT_EQ(placeOf("codex"), "/home/ann/.codex/config.toml");
  EXPECT_EQ(placeOf("gemini-cli"), "/home/ann/.gemini/settings.json");
  EXPECT_EQ(placeOf("zed"), "/home/ann/.config/zed/settings.json");
  EXPECT_EQ(placeOf("opencode"), "/home/ann/.config/opencode/opencode.json");
  EXPECT_EQ(placeOf("openclaw"), "/home/ann/.openclaw/openclaw.json");
  EXPECT_EQ(placeOf("openclaw-cli"), "nowhere");
}

TEST_F(ClientFileTest, IsWhereTheEnvironmentMovesIt) {
  environment = {{"HOME", "/home/ann"},
                 {"XDG_CONFIG_HOME", "/c"},
                 {"CODEX_HOME", "/codex"},
                 {"CLAUDE_CONFIG_DIR", "/claude"},
                 {"OPENCLAW_STATE_DIR", "/claw"}};
  EXPECT_EQ(placeOf("claude-code"), "/claude/.claude.json");
  EXPECT_EQ(placeOf("codex"), "/codex/config.toml");
  EXPECT_EQ(placeOf("zed"), "/c/zed/settings.json");
  EXPECT_EQ(placeOf("openclaw"), "/claw/openclaw.json");
  environment["OPENCLAW_CONFIG_PATH"] = "/elsewhere.json";
  EXPECT_EQ(placeOf("openclaw"), "/elsewhere.json");
}

TEST_F(ClientFileTest, IsTheOneOfTwoNamesThatIsThere) {
  const TemporaryDirectory home;
  environment["HOME"] = home.path().string();
  testing::writeFile(home / ".config/opencode/opencode.jsonc", "{}");
  EXPECT_EQ(placeOf("opencode"), (home / ".config/opencode/opencode.jsonc").string());
}

TEST_F(ClientFileTest, IsNowhereWithoutAHome) {
  environment.clear();
  for (const auto& client : mcpClients()) EXPECT_EQ(placeOf(client.id.data()), "nowhere");
}

}  // namespace
}  // namespace velmora
