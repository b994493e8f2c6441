// The commands with which a user looks after agents, over a channel that answers as the test says.
#include <cstdlib>
#include <ctime>

#include "VelmoraHelper/Commands/CommandLine.h"
#include "VelmoraHelper/Commands/HistoryCommand.h"
#include "VelmoraHelper/Commands/PersonCalls.h"
#include "tests/VelmoraHelper/Commands/CommandFixture.h"
#include "tests/support/Utf8Locale.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;

class PersonCommands : public testing::CommandFixture {
 protected:
  PersonCommands() {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
  }

  struct Asked {
    PersonVerb verb;
    JSONObject arguments;
  };

  int run(std::vector<std::string> arguments) {
    out.str("");
    err.str("");
    auto surroundings = context();
    surroundings.person = [this] { return std::make_unique<Channel>(*this); };
    surroundings.askUser = [this](const std::string& prompt, std::chrono::seconds) {
      prompts.push_back(prompt);
      return typed;
    };
    surroundings.now = [] { return Date{800'000'000}; };
    return runCommandLine(surroundings, std::move(arguments));
  }
  template <class Payload>
  void answerWith(const Payload& payload) {
    response = {.ok = true, .data = decodeJson<JSONValue>(encodeJson(payload))};
  }
  void refuseWith(ErrorCode code, const std::string& message) {
    response = {.error =
                    StructuredError{.code = code, .message = message, .recoverySuggestion = "Do it there."}};
  }

  LocalControlResponse response{};
  std::vector<Asked> asked;
  std::size_t endsAfter = SIZE_MAX;  ///< How many calls the bridge answers.
  bool challenges = false;           ///< Whether the bridge wants a word.
  std::optional<std::string> typed = "bcdf";
  std::vector<std::string> prompts;

 private:
  class Channel final : public PersonCalling {
   public:
    explicit Channel(PersonCommands& test) : test_(test) {}
    LocalControlResponse call(PersonVerb verb, JSONObject arguments, std::chrono::seconds) override {
      test_.asked.push_back({verb, std::move(arguments)});
      if (test_.asked.size() > test_.endsAfter)
        return {.error = StructuredError{.code = ErrorCode::bridgeUnavailable, .message = "It has ended."}};
      if (test_.challenges && verb != PersonVerb::confirm) {
        return {.ok = true, .data = JSONObject{{"wordShownOn", "/dev/pts/9"}, {"seconds", 60}}};
      }
      return test_.response;
    }

   private:
    PersonCommands& test_;
  };
};

PersonSession sampleSession() {
  PersonSession named;
  named.session.sessionId = *Uuid::parse("1A2B3C4D-2222-3333-4444-555555555555");
  named.session.tty = "/dev/pts/3";
  named.session.title = "main: vim\x1B]0;x\x07";
  named.session.permission = SessionPermission::readOnly;
  named.session.busy = true;
  named.targets = {"%5", "main:1.0"};
  return named;
}

TEST_F(PersonCommands, PauseAsksAtOnceAndSaysWhatItMeans) {
  answerWith(PersonLimits{.paused = true});
  EXPECT_EQ(run({"pause"}), 0);
  EXPECT_EQ(asked.at(0).verb, PersonVerb::pause);
  EXPECT_EQ(out.str(), "Paused: agents type nothing and open nothing until you resume.\n");
}

TEST_F(PersonCommands, StatusAsJsonSaysWhereAgentsMayTypeIntoProgramsThatRun) {
  answerWith(PersonStatus{.limits = {.allowOwnBusySessionInput = true}});
  EXPECT_EQ(run({"status", "--json"}), 0);
  EXPECT_THAT(out.str(), HasSubstr("\"allowBusySessionInput\": false,\n"));
  EXPECT_THAT(out.str(), HasSubstr("\"allowOwnBusySessionInput\": true\n"));
}

TEST_F(PersonCommands, PermitNamesTheSessionAsTheUserDoesAndSaysWhatHoldsNow) {
  answerWith(sampleSession());
  EXPECT_EQ(run({"permit", "main:1.0", "readOnly"}), 0);
  EXPECT_EQ(asked.at(0).arguments, (JSONObject{{"session", "main:1.0"}, {"permission", "readOnly"}}));
  EXPECT_EQ(out.str(), "1A2B3C4D main: vim?]0;x? is readOnly: agents read it and do not type into it.\n");
}

TEST_F(PersonCommands, ResumeTypesTheWordBackThatTheBridgeShows) {
  challenges = true;
  answerWith(PersonLimits{});
  EXPECT_EQ(run({"resume"}), 0);
  EXPECT_EQ(prompts, std::vector<std::string>{"Word: "});
  ASSERT_EQ(asked.size(), 2u);
  EXPECT_EQ(asked[0].verb, PersonVerb::resume);
  EXPECT_EQ(asked[1].verb, PersonVerb::confirm);
  EXPECT_EQ(asked[1].arguments, (JSONObject{{"word", "bcdf"}}));
  EXPECT_THAT(out.str(), HasSubstr("Not paused"));
}

TEST_F(PersonCommands, WithoutAWordNothingIsConfirmed) {
  challenges = true;
  typed.reset();
  EXPECT_EQ(run({"permit", "%5", "managed"}), 1);
  EXPECT_EQ(asked.size(), 1u);
  EXPECT_THAT(err.str(), HasSubstr("No word was typed."));
}

TEST_F(PersonCommands, ARefusalIsExplainedAndFails) {
  refuseWith(ErrorCode::sessionNotAllowed, "That takes the user.");
  EXPECT_EQ(run({"permit", "%5", "managed"}), 1);
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(err.str(), "velmora: That takes the user. (SESSION_NOT_ALLOWED)\nDo it there.\n");
}

TEST_F(PersonCommands, AWarningDoesNotFail) {
  answerWith(PersonLimits{.paused = true});
  response.warnings = {{.code = ErrorCode::historyStorageFailed, .message = "Not kept."}};
  EXPECT_EQ(run({"pause"}), 0);
  EXPECT_THAT(err.str(), HasSubstr("Not kept."));
}

TEST_F(PersonCommands, PolicyAndBusySayWhatHoldsNow) {
  answerWith(PersonLimits{.sessionPolicy = SessionPolicy::selective});
  EXPECT_EQ(run({"policy", "selective"}), 0);
  EXPECT_EQ(asked.at(0).arguments, (JSONObject{{"policy", "selective"}}));
  EXPECT_THAT(out.str(), HasSubstr("Session policy: selective."));
  EXPECT_EQ(run({"busy", "off"}), 0);
  EXPECT_EQ(asked.at(1).verb, PersonVerb::busyInput);
  EXPECT_EQ(asked.at(1).arguments, (JSONObject{{"allowed", false}}));
  answerWith(PersonLimits{.allowOwnBusySessionInput = true});
  EXPECT_EQ(run({"busy", "own"}), 0);
  EXPECT_EQ(asked.at(2).arguments, (JSONObject{{"allowed", false}, {"own", true}}));
  EXPECT_THAT(out.str(), HasSubstr("windows that they opened"));
}

TEST_F(PersonCommands, WhatMakesNoSenseIsNotAsked) {
  for (const auto& arguments : std::vector<std::vector<std::string>>{{"permit", "%5"},
                                                                     {"permit", "%5", "all"},
                                                                     {"policy"},
                                                                     {"policy", "loose"},
                                                                     {"busy", "maybe"},
                                                                     {"history", "--since", "soon"},
                                                                     {"history", "--tool", "fly"}}) {
    EXPECT_EQ(run(arguments), 2) << arguments.front();
    EXPECT_NE(err.str(), "");
  }
  EXPECT_TRUE(asked.empty());
}

TEST_F(PersonCommands, SessionsStandInATable) {
  testing::useUtf8Locale();
  PersonSessions sessions{{sampleSession(), sampleSession()}};
  sessions.sessions[1].session.busy = false;
  sessions.sessions[1].session.title = "한국어";
  sessions.sessions[1].session.permission = SessionPermission::managed;
  sessions.sessions[1].targets.clear();
  sessions.sessions.push_back(sampleSession());
  sessions.sessions[2].targets = {"%7", "작업:1.0"};
  answerWith(sessions);
  EXPECT_EQ(run({"sessions"}), 0);
  EXPECT_EQ(out.str(),
            "ID        TARGET       PERMISSION  STATE  TITLE\n"
            "1A2B3C4D  %5 main:1.0  readOnly    busy   main: vim?]0;x?\n"
            "1A2B3C4D  /dev/pts/3   managed     idle   한국어\n"
            "1A2B3C4D  %7 작업:1.0  readOnly    busy   main: vim?]0;x?\n");
}

TEST_F(PersonCommands, SessionsAndStatusAreJsonWithDatesAsText) {
  answerWith(PersonSessions{{sampleSession()}});
  EXPECT_EQ(run({"sessions", "--json"}), 0);
  const auto sessions = parseJson(out.str());
  EXPECT_EQ(sessions.at("sessions").at(0).at("targets").at(1), "main:1.0");
  EXPECT_EQ(sessions.at("sessions").at(0).at("session").at("firstSeenAt"), "2001-01-01T00:00:00.000Z");
  answerWith(PersonStatus{.limits = {.sessionPolicy = SessionPolicy::selective}});
  EXPECT_EQ(run({"status", "--json"}), 0);
  EXPECT_EQ(parseJson(out.str()).at("limits").at("sessionPolicy"), "selective");
}

TEST_F(PersonCommands, HistoryAsksForWhatTheUserWants) {
  answerWith(PersonHistory{});
  EXPECT_EQ(run({"history", "--since", "1h", "--session", "%5", "--tool", "send_command"}), 0);
  EXPECT_EQ(asked.at(0).arguments,
            (JSONObject{{"since", 799'996'400}, {"session", "%5"}, {"tool", "terminal_send_command"}}));
  EXPECT_EQ(run({"history"}), 0);
  EXPECT_EQ(asked.at(1).arguments, JSONObject{});
}

TEST_F(PersonCommands, HistoryShowsALineARequestOldestFirst) {
  MCPRequestRecord refused{
      .receivedAt = Date{0},
      .client = {"agent\n2", "1.0"},
      .toolName = ToolName::sendCommand,
      .sessionSnapshot = SessionReference{.sessionId = sampleSession().session.sessionId},
      .status = RequestStatus::rejected,
      .durationMilliseconds = 12,
      .error = StructuredError{.code = ErrorCode::sessionBusy}};
  MCPRequestRecord command{.receivedAt = Date{60},
                           .client = {"agent", std::nullopt},
                           .toolName = ToolName::sendCommand,
                           .commandBody = std::string(70, 'x') + "\x1B[2J",
                           .status = RequestStatus::delivered};
  answerWith(PersonHistory{.records = {command, refused}, .more = true});
  EXPECT_EQ(run({"history"}), 0);
  EXPECT_EQ(out.str(),
            "2001-01-01 00:00:00  rejected SESSION_BUSY  12 ms  agent?2  terminal_send_command  1A2B3C4D\n"
            "2001-01-01 00:01:00  delivered  agent  terminal_send_command  " +
                std::string(60, 'x') + "...\n");
  EXPECT_THAT(err.str(), HasSubstr("older requests are left out"));
  EXPECT_EQ(run({"history", "--json"}), 0);
  EXPECT_EQ(parseJson(out.str()).at(0).at("receivedAt"), "2001-01-01T00:01:00.000Z");
}

TEST_F(PersonCommands, WatchShowsALineARequestUntilTheBridgeEnds) {
  MCPRequestRecord seen{.client = {"agent", std::nullopt},
                        .toolName = ToolName::sendCommand,
                        .commandBody = "ls\x1B[2J",
                        .status = RequestStatus::delivered};
  answerWith(PersonEvents{{seen}, 3});
  endsAfter = 2;
  EXPECT_EQ(run({"watch", "--plain"}), 1);
  const std::string line = "2001-01-01 00:00:00  delivered  agent  terminal_send_command  ls?[2J\n";
  EXPECT_EQ(out.str(), line + line);
  EXPECT_THAT(err.str(), HasSubstr("3 requests came too fast"));
  EXPECT_THAT(err.str(), HasSubstr("It has ended."));
  asked.clear();
  EXPECT_EQ(run({"watch", "--json"}), 1);
  EXPECT_EQ(parseJson(out.str().substr(0, out.str().find('\n'))).at("commandBody"), "ls\x1B[2J");
  EXPECT_EQ(run({"watch", "--json", "--plain"}), 2);
}

TEST(DurationOf, TakesSecondsMinutesHoursAndDays) {
  using std::chrono::seconds;
  EXPECT_EQ(durationOf("90s"), seconds(90));
  EXPECT_EQ(durationOf("30m"), seconds(1800));
  EXPECT_EQ(durationOf("1h"), seconds(3600));
  EXPECT_EQ(durationOf("2d"), seconds(172800));
  for (const auto* wrong : {"", "h", "1", "-1h", "1w", "1hh", "99999999999999999999h", "1.5h"})
    EXPECT_EQ(durationOf(wrong), std::nullopt) << wrong;
}

}  // namespace
}  // namespace velmora
