#include "VelmoraHelper/Commands/CommandLine.h"
#include "tests/VelmoraHelper/Commands/CommandFixture.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

class CommandLine : public testing::CommandFixture {
 protected:
  int run(std::vector<std::string> arguments) {
    out.str("");
    err.str("");
    return runCommandLine(context(), std::move(arguments));
  }
};

TEST_F(CommandLine, PrintsItsVersion) {
  EXPECT_EQ(run({"--version"}), 0);
  EXPECT_EQ(out.str(), "velmora 1.2.3\n");
}

TEST_F(CommandLine, PrintsItsUseAndThatOfEachCommand) {
  EXPECT_EQ(run({"--help"}), 0);
  for (const auto* command : {"call", "status", "doctor", "config"}) {
    EXPECT_THAT(out.str(), HasSubstr("\n  " + std::string(command) + " "));
  }
  EXPECT_EQ(err.str(), "");
  for (const auto* command : {"call", "status", "doctor", "config"}) {
    EXPECT_EQ(run({command, "--help"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("velmora " + std::string(command)));
  }
  EXPECT_TRUE(requests.empty());
}

TEST_F(CommandLine, FailsWhenItsAnswerCannotBeWritten) {
  out.setstate(std::ios::badbit);
  EXPECT_EQ(run({"config"}), 1);
  EXPECT_EQ(err.str(), "velmora: standard output could not be written\n");
  EXPECT_EQ(run({"--version"}), 1);
}

TEST_F(CommandLine, GivesEachCommandItsArguments) {
  answer = [](const auto& request) { return success(request, StatusPayload{}); };
  EXPECT_EQ(run({"call", "terminal_send_key", R"({"key":"tab"})"}), 0);
  EXPECT_EQ(requests.at(0).arguments, (JSONObject{{"key", "tab"}}));
  EXPECT_EQ(run({"call", "terminal_status"}), 0);
  EXPECT_EQ(requests.at(1).arguments, JSONObject{});
  in.str(R"({"key":"home"})");
  EXPECT_EQ(run({"call", "terminal_send_key", "-"}), 0);
  EXPECT_EQ(requests.at(2).arguments, (JSONObject{{"key", "home"}}));
  EXPECT_EQ(run({"status"}), 0);
  EXPECT_THAT(out.str(), HasSubstr("Bridge:"));
  EXPECT_EQ(run({"doctor"}), 0);
  EXPECT_THAT(out.str(), HasSubstr("OK    helper"));
  EXPECT_EQ(run({"config"}), 0);
  EXPECT_THAT(out.str(), HasSubstr("cursor"));
  EXPECT_EQ(run({"config", "codex"}), 0);
  EXPECT_THAT(out.str(), HasSubstr("[mcp_servers.terminal]"));
}

TEST_F(CommandLine, ReturnsOneForARefusal) {
  EXPECT_EQ(run({"call", "terminal_status"}), 1);
  EXPECT_EQ(run({"status"}), 1);
}

TEST_F(CommandLine, ReturnsTwoForWhatMakesNoSense) {
  const std::vector<std::vector<std::string>> nonsense{{"--nonsense"},
                                                       {"--"},
                                                       {"nonsense"},
                                                       {""},
                                                       {"call"},
                                                       {"call", "no_tool"},
                                                       {"call", "terminal_status", "[1]"},
                                                       {"config", "no-client"},
                                                       {"status", "extra"},
                                                       {"call", "terminal_status", "{}", "{}"},
                                                       {"status", "--nonsense"},
                                                       {"config", "a", "b"}};
  for (const auto& arguments : nonsense) {
    EXPECT_EQ(run(arguments), 2) << ::testing::PrintToString(arguments);
    EXPECT_EQ(out.str(), "");
    EXPECT_NE(err.str(), "");
  }
  EXPECT_TRUE(requests.empty());
}

TEST_F(CommandLine, NamesTheCommandThatWasMeant) {
  EXPECT_EQ(run({"docter"}), 2);
  EXPECT_THAT(err.str(), HasSubstr("there is no command \"docter\"; did you mean doctor?\n"));
}

TEST_F(CommandLine, SaysWhatTheSystemRefused) {
  connect = [] { throw std::runtime_error("posix_spawn: no memory"); };
  EXPECT_EQ(run({"doctor"}), 1);
  EXPECT_EQ(err.str(), "velmora: posix_spawn: no memory\n");
}

}  // namespace
}  // namespace velmora
