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

TEST_F(ConfigCommand, PrintsTheExtendedForm) {
  EXPECT_EQ(printConfig(context(), "codex", ToolForm::extended), ExitStatus::success);
  EXPECT_EQ(out.str(), snippetFor(*findMcpClient("codex"), program.string(), ToolForm::extended) + "\n");
  EXPECT_EQ(printConfig(context(), "openclaw-cli", ToolForm::extended), ExitStatus::usage);
  EXPECT_THAT(err.str(), HasSubstr("use `velmora config --extended openclaw`"));
}

TEST_F(ConfigCommand, LaunchesTheHelperOfAnotherMachineUnderANameOfItsOwn) {
  EXPECT_EQ(printConfig(context(), "claude-code", ToolForm::plain, "ann@build.example.org"),
            ExitStatus::success);
  EXPECT_EQ(out.str(),
            "claude mcp add --scope user terminal-build-example-org -- \"ssh\" -T -o BatchMode=yes "
            "-o ServerAliveInterval=15 ann@build.example.org velmora\n");
  EXPECT_THAT(err.str(), HasSubstr("`ssh ann@build.example.org velmora --version`"));
  out.str("");
  EXPECT_EQ(printConfig(context(), "codex", ToolForm::extended, "two"), ExitStatus::success);
  EXPECT_EQ(out.str(), R"([mcp_servers.terminal-two]
command = "ssh"
args = ["-T", "-o", "BatchMode=yes", "-o", "ServerAliveInterval=15", "two", "velmora", "--extended"]
)");
  for (const auto& known : mcpClients()) {
    const bool takesArguments = known.id != "openclaw-cli";
    EXPECT_EQ(printConfig(context(), std::string(known.id), ToolForm::plain, "two"),
              takesArguments ? ExitStatus::success : ExitStatus::usage)
        << known.id;
  }
  EXPECT_THAT(err.str(), HasSubstr("use `velmora config --ssh two openclaw`"));
}

TEST_F(ConfigCommand, TakesNothingForAMachineThatCouldBeAnOptionOrACommand) {
  for (const auto* host : {"", "-oProxyCommand=sh", "a b", "a;b", "$(a)", "a\nb", "\"a\""}) {
    EXPECT_EQ(printConfig(context(), "cursor", ToolForm::plain, host), ExitStatus::usage) << host;
    EXPECT_EQ(out.str(), "");
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
  EXPECT_EQ(printConfig(context(), "claude"), ExitStatus::usage);
  EXPECT_THAT(err.str(), HasSubstr("no client \"claude\"; did you mean claude-desktop or claude-code?\n"));
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
