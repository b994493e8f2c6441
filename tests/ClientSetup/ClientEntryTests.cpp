#include <gmock/gmock.h>

#include "ClientSetup/ClientEntry.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const ServerLaunch plain = localHelper("/opt/velmora");
const ServerLaunch extended = localHelper("/opt/velmora", ToolForm::extended);

std::vector<ConfigMember> changes(const char* client, const ServerLaunch& server, const JSONObject& entry) {
  return neededChanges(*findMcpClient(client), server, entry);
}

TEST(ClientEntry, IsWhatTheClientsSnippetSays) {
  for (const auto& client : mcpClients()) {
    if (client.servers.empty()) continue;
    JSONObject entry;
    for (const auto& [key, value] : entryMembers(client, extended)) entry[key] = *value;
    EXPECT_THAT(changes(client.id.data(), extended, entry), IsEmpty()) << client.id;
    EXPECT_THAT(changes(client.id.data(), plain, entry), ::testing::SizeIs(1)) << client.id;
    EXPECT_THAT(launchedWords(entry), ElementsAre("/opt/velmora", "--extended")) << client.id;
    EXPECT_TRUE(launchesVelmora(entry));
  }
}

TEST(ClientEntry, TakesAnEmptyListOfArgumentsForNone) {
  EXPECT_THAT(
      changes("cursor", plain, {{"command", "/opt/velmora"}, {"args", JSONArray{}}, {"env", JSONObject{}}}),
      IsEmpty());
  EXPECT_THAT(changes("zed", plain, {{"command", "/opt/velmora"}}), IsEmpty());
  EXPECT_THAT(changes("codex", plain, {{"command", "/opt/velmora"}, {"args", JSONArray{"--extended"}}}),
              ElementsAre(ConfigMember{"args", std::nullopt}));
}

TEST(ClientEntry, IsOursWhenItLaunchesAProgramOfOurs) {
  EXPECT_TRUE(launchesVelmora({{"command", "/old/place/velmora"}}));
  EXPECT_TRUE(launchesVelmora({{"command", "velmora-headless"}}));
  EXPECT_TRUE(launchesVelmora({{"command", "ssh"}, {"args", JSONArray{"-T", "host", "velmora"}}}));
  EXPECT_TRUE(launchesVelmora({{"command", JSONArray{"/x/velmora"}}}));
  EXPECT_FALSE(launchesVelmora({{"command", "npx"}, {"args", JSONArray{"terminal-mcp"}}}));
  EXPECT_FALSE(launchesVelmora({{"command", "ssh"}, {"args", JSONArray{"host", "other"}}}));
  EXPECT_FALSE(launchesVelmora({{"url", "http://localhost"}}));
  EXPECT_FALSE(launchesVelmora({}));
}

}  // namespace
}  // namespace velmora
