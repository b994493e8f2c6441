#include "ClientSetup/McpClients.h"
#include "VelmoraHelper/Commands/ConfigCommand.h"
#include "tests/VelmoraHelper/Commands/CommandFixture.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

class ConfigCommand : public testing::CommandFixture {};

TEST_F(ConfigCommand, PrintsTheSnippetOfEveryClientWithTheProgramsOwnPath) {
  program = "/Applications/My \"Apps\"/velmora";
  for (const auto& client : mcpClients()) {
    out.str("");
    err.str("");
    EXPECT_EQ(printConfig(context(), std::string(client.id)), ExitStatus::success);
    EXPECT_EQ(out.str(), snippetFor(client, program.string()) + "\n");
    EXPECT_EQ(err.str(), std::string(client.name) + ": " + std::string(client.place) + "\n");
  }
}

TEST_F(ConfigCommand, ListsTheClientsWithoutOne) {
  EXPECT_EQ(printConfig(context(), ""), ExitStatus::success);
  for (const auto& client : mcpClients()) {
    EXPECT_THAT("\n" + out.str(), HasSubstr("\n" + std::string(client.id) + " "));
    EXPECT_THAT(out.str(), HasSubstr("  " + std::string(client.name) + "\n"));
  }
  EXPECT_EQ(err.str(), "");
}

TEST_F(ConfigCommand, NamesTheClientThatWasMeant) {
  EXPECT_EQ(printConfig(context(), "claude-dekstop"), ExitStatus::usage);
  EXPECT_THAT(err.str(), HasSubstr("there is no client \"claude-dekstop\"; did you mean claude-desktop?\n"));
  EXPECT_EQ(out.str(), "");
}

TEST_F(ConfigCommand, SaysThatNoConfigurationCanHoldAPathThatIsNotUtf8) {
  program = "/opt/\xFF/velmora";
  EXPECT_EQ(printConfig(context(), "cursor"), ExitStatus::failure);
  EXPECT_THAT(err.str(), HasSubstr("is not UTF-8"));
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace velmora
