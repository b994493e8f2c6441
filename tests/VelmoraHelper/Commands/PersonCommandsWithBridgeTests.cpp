// A user's commands as programs, with a real bridge and a tmux server of the test's own.
#include <gmock/gmock.h>

#include "BridgeModels/Json/JsonReader.h"
#include "tests/BridgeHost/HeadlessFixture.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

class PersonCommandsWithBridge : public testing::HeadlessFixture {
 protected:
  struct Outcome {
    int status;
    std::string output;
    std::string errors;
  };

  Outcome run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), VELMORA_BIN "/velmora");
    testing::ChildProgram program(std::move(arguments), environment);
    program.closeInput();
    auto output = program.restOfOutput();
    auto errors = program.restOfErrors();
    return {program.wait(), std::move(output), std::move(errors)};
  }
  boost::json::value json(std::vector<std::string> arguments) const {
    arguments.emplace_back("--json");
    const auto outcome = run(std::move(arguments));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return parseJson(outcome.output);
  }
};

TEST_F(PersonCommandsWithBridge, PauseStopsAgentsAlsoInTheNextRun) {
  startTmux();
  startHeadless();
  const auto paused = run({"pause"});
  EXPECT_EQ(paused.status, 0) << paused.errors;
  EXPECT_EQ(call(ToolName::createSession).error.value().code, ErrorCode::mcpPaused);
  EXPECT_EQ(json({"status"}).at("limits").at("paused"), true);
  EXPECT_EQ(endHeadless(), 0);
  startHeadless();
  EXPECT_EQ(call(ToolName::createSession).error.value().code, ErrorCode::mcpPaused);
  EXPECT_THAT(run({"status"}).output, ::testing::StartsWith("Bridge:      paused"));
}

TEST_F(PersonCommandsWithBridge, PermitTakesASessionByItsPaneItsTargetAndItsId) {
  startTmux();
  startHeadless();
  const auto pane = tmux({"display-message", "-p", "-t", "main", "#{pane_id}"});
  const auto target =
      tmux({"display-message", "-p", "-t", "main", "#{session_name}:#{window_index}.#{pane_index}"});
  EXPECT_THAT(run({"sessions"}).output, HasSubstr(pane + " " + target));
  const auto id =
      std::string(json({"sessions"}).at("sessions").at(0).at("session").at("sessionId").as_string());
  const auto refused = [&] {
    const auto response = call(ToolName::sendCommand, {{"sessionId", id}, {"command", "true"}});
    return !response.ok && response.error->code == ErrorCode::sessionNotAllowed;
  };
  EXPECT_EQ(run({"permit", pane, "readOnly"}).status, 0);
  EXPECT_TRUE(refused());
  EXPECT_EQ(run({"permit", target, "blocked"}).status, 0);
  EXPECT_EQ(call(ToolName::readOutput, {{"sessionId", id}}).error.value().code, ErrorCode::sessionNotAllowed);
  EXPECT_EQ(run({"permit", id.substr(0, 8), "blocked"}).status, 0);
  EXPECT_EQ(run({"permit", id, "blocked"}).status, 0);
  EXPECT_EQ(run({"permit", "%999", "blocked"}).status, 1);
}

TEST_F(PersonCommandsWithBridge, WhatIsWithheldIsNotGivenBackByACommandThatReadsNoTerminal) {
  startTmux();
  startHeadless();
  const auto pane = tmux({"display-message", "-p", "-t", "main", "#{pane_id}"});
  EXPECT_EQ(run({"permit", pane, "blocked"}).status, 0);
  EXPECT_EQ(run({"policy", "selective"}).status, 0);
  EXPECT_EQ(run({"busy", "off"}).status, 0);
  for (const auto& command : std::vector<std::vector<std::string>>{
           {"permit", pane, "readOnly"}, {"permit", pane, "managed"}, {"policy", "safe"}, {"busy", "on"}}) {
    const auto outcome = run(command);
    EXPECT_EQ(outcome.status, 1) << command.front();
    EXPECT_THAT(outcome.errors, HasSubstr("(SESSION_NOT_ALLOWED)"));
  }
  EXPECT_EQ(json({"status"}).at("limits").at("sessionPolicy"), "selective");
  EXPECT_EQ(json({"sessions"}).at("sessions").at(0).at("session").at("permission"), "blocked");
}

TEST_F(PersonCommandsWithBridge, HistoryShowsWhatAgentsAskedForAndNotWhatUsersDid) {
  startTmux();
  startHeadless();
  createSession();
  run({"sessions"});
  run({"status", "--json"});
  const auto history = run({"history", "--since", "1h"});
  EXPECT_THAT(
      history.output,
      ::testing::MatchesRegex("[-0-9]+ [:0-9]+  delivered  [0-9]+ ms  tester  terminal_create_session\n"));
  EXPECT_EQ(json({"history", "--tool", "terminal_send_key"}).as_array().size(), 0u);
}

TEST_F(PersonCommandsWithBridge, WatchShowsWhatIsTypedThoughNoCommandIsStored) {
  startTmux();
  startHeadless();
  const auto id = textAt(createSession(), "sessionId");
  testing::ChildProgram watch({VELMORA_BIN "/velmora", "watch", "--json"}, environment);
  std::string line;
  // The first request may come before it watches.
  EXPECT_TRUE(testing::eventually([&] {
    call(ToolName::sendCommand, {{"sessionId", id}, {"command", "echo seen"}});
    return watch.hasOutput();
  }));
  const auto request = parseJson(watch.readLine().value());
  EXPECT_EQ(request.at("commandBody"), "echo seen");
  EXPECT_EQ(request.at("client").at("name"), "tester");
  EXPECT_EQ(endHeadless(), 0);
  EXPECT_EQ(watch.wait(), 1);
  EXPECT_FALSE(std::filesystem::exists(historyFile()));
}

TEST_F(PersonCommandsWithBridge, SayThatNothingRuns) {
  const auto paused = run({"pause"});
  EXPECT_EQ(paused.status, 1);
  EXPECT_THAT(paused.errors, HasSubstr("velmora: Velmora is not running."));
}

}  // namespace
}  // namespace velmora
