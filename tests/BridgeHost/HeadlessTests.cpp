// The whole bridge as a process: a real socket at one end, a real tmux server at the other.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <cstdint>
#include <thread>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketClient.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "tests/BridgeHost/HeadlessFixture.h"

namespace velmora {
namespace {

using ::testing::AnyOf;
using testing::eventually;
using ::testing::HasSubstr;
using ::testing::Not;

class Headless : public testing::HeadlessFixture {
 protected:
  static LocalControlRequest ofAnotherVersion() {
    return {.protocolVersion = 2, .requestId = Uuid::random(), .client = {"tester", std::nullopt, 1}};
  }
  std::size_t descriptorCount() const {
    return testing::namesIn("/proc/" + std::to_string(headless->process()) + "/fd").size();
  }
};

TEST_F(Headless, TellsTheServiceManagerWhenClientsCanConnect) {
  const FileDescriptor manager(::socket(AF_UNIX, SOCK_DGRAM, 0));
  const auto place = UnixSocketEndpoint::address(directory / "notify");
  ASSERT_EQ(::bind(manager.get(), reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
  environment["NOTIFY_SOCKET"] = (directory / "notify").string();
  startHeadless();
  char text[64];
  const auto count = ::recv(manager.get(), text, sizeof text, 0);
  EXPECT_EQ(std::string(text, static_cast<std::size_t>(count)), "READY=1");
  EXPECT_TRUE(call(ToolName::status).ok);
}

TEST_F(Headless, TellsAnMcpClientThatLaunchedItWhichProgramIsTheServer) {
  startHeadless();
  headless->write(R"({"jsonrpc":"2.0","id":1,"method":"initialize","params":{}})"
                  "\n");
  headless->signal(SIGUSR1);
  EXPECT_TRUE(eventually([&] {
    return textAt(at(payload(ToolName::status), "status"), "mcpState") == wireName(MCPState::paused);
  })) << "it serves all the same";
  headless->signal(SIGTERM);
  EXPECT_THAT(headless->restOfErrors(), HasSubstr("error start: velmora-headless is not the MCP server"));
  EXPECT_EQ(endHeadless(), 0);
  EXPECT_EQ(lastOutput, "");
}

TEST_F(Headless, SaysNothingOfTheServerToWhomItsInputIsClosed) {
  startHeadless();
  headless->closeInput();
  for (int round = 0; round < 3; ++round) EXPECT_TRUE(call(ToolName::status).ok);
  headless->signal(SIGTERM);
  EXPECT_THAT(headless->restOfErrors(), Not(HasSubstr("MCP server")));
  EXPECT_EQ(endHeadless(), 0);
}

TEST_F(Headless, CarriesAllNineToolsFromTheSocketToAPaneAndBack) {
  startTmux();
  startHeadless();
  EXPECT_EQ(textAt(at(payload(ToolName::status), "status"), "terminalState"), "available");

  const auto created = createSession();
  const auto id = textAt(created, "sessionId");
  const auto pane = paneOf(textAt(created, "tty"));
  EXPECT_THAT(pane, ::testing::StartsWith("%"));

  const auto sent =
      payload(ToolName::sendCommand, {{"sessionId", id}, {"command", "echo hello-$((40 + 2))"}});
  EXPECT_EQ(textAt(sent, "deliveryStatus"), "delivered_to_terminal");
  expectInHistory(id, "\nhello-42");

  payload(ToolName::sendCommand,
          {{"sessionId", id},
           {"command",
            "echo '첫째 줄: 안녕 👩‍👩‍👧‍👦'\nprintf '%s|%s\\n' \"둘째 "
            "\\\"quoted\\\" \\$HOME\" 'it'\\''s 🚀; done'"}});
  expectInHistory(id, "\n첫째 줄: 안녕 👩");
  expectInHistory(id, "\n둘째 \"quoted\" $HOME|it's 🚀; done");

  // Three lines back is the first command again.
  const auto pressed =
      payload(ToolName::sendKey, {{"sessionId", id}, {"key", "upArrow"}, {"repeatCount", 3}});
  EXPECT_EQ(at(pressed, "repeatCount"), 3);
  payload(ToolName::sendKey, {{"sessionId", id}, {"key", "return"}});
  expectInHistory(id, "done\n$ echo hello-$((40 + 2))\nhello-42");

  const auto end = payload(ToolName::readOutput, {{"sessionId", id}, {"maxCharacters", 5}});
  EXPECT_EQ(at(end, "returnedCharacters"), 5);
  EXPECT_EQ(at(end, "truncated"), true);

  const auto sessions = *at(payload(ToolName::listSessions), "sessions").array();
  std::vector<std::string> listed;
  for (const auto& session : sessions) listed.push_back(textAt(session, "sessionId"));
  EXPECT_EQ(listed.size(), 2u);
  EXPECT_THAT(listed, ::testing::Contains(id));
  EXPECT_EQ(textAt(payload(ToolName::focusSession, {{"sessionId", id}}), "sessionId"), id);
  // Nobody is attached, so either may be the active one.
  EXPECT_THAT(listed,
              ::testing::Contains(textAt(at(payload(ToolName::getActiveSession), "session"), "sessionId")));

  const auto picture = textAt(payload(ToolName::captureScreen, {{"sessionId", id}}), "imagePath");
  EXPECT_THAT(picture, ::testing::StartsWith((directory / "Velmora/terminal-").string()));
  EXPECT_THAT(testing::contentOf(picture), ::testing::StartsWith("\x89PNG\r\n"));
  EXPECT_EQ(testing::modeOf(picture), 0600u);
}

TEST_F(Headless, LoadsWhatDrawsWithTheFirstPicture) {
  startHeadless();
  const auto id = textAt(createSession(), "sessionId");
  const std::string libraries = "/proc/" + std::to_string(headless->process()) + "/maps";
  EXPECT_THAT(testing::contentOf(libraries), Not(HasSubstr("libpango")));
  payload(ToolName::captureScreen, {{"sessionId", id}});
  EXPECT_THAT(testing::contentOf(libraries), HasSubstr("libpango"));
}

TEST_F(Headless, PrintsOneLineAndEndsWithZeroWithoutTouchingTheTmuxServer) {
  startTmux();
  startHeadless();
  createSession();
  ASSERT_TRUE(std::filesystem::exists(socketPath()));
  EXPECT_EQ(endHeadless(), 0);
  EXPECT_EQ(lastOutput, "");
  EXPECT_FALSE(std::filesystem::exists(socketPath()));
  EXPECT_EQ(tmux({"list-panes", "-a", "-F", "pane"}), "pane\npane");
}

TEST_F(Headless, EndsOnAnInterruptToo) {
  startHeadless();
  headless->signal(SIGINT);
  EXPECT_EQ(headless->wait(), 0);
  headless.reset();
  EXPECT_FALSE(std::filesystem::exists(socketPath()));
}

TEST_F(Headless, EndsWhileClientsAreConnected) {
  startHeadless();
  LocalControlClient client(socketPath());
  EXPECT_TRUE(call(client, ToolName::status).ok);
  EXPECT_EQ(endHeadless(), 0);
  EXPECT_THROW(call(client, ToolName::status), UnixSocketError);
}

TEST_F(Headless, KeepsAHistoryOnlyWhenAskedAndDeletesItOnExitOnlyWhenAsked) {
  startTmux();
  startHeadless();
  historyOf(textAt(createSession(), "sessionId"));
  EXPECT_EQ(endHeadless(), 0);
  EXPECT_FALSE(std::filesystem::exists(historyFile()));
  for (const bool deletes : {false, true}) {
    writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = deletes});
    startHeadless();
    const auto id = textAt(createSession(), "sessionId");
    historyOf(id);
    EXPECT_TRUE(eventually([&] { return testing::contentOf(historyFile()).find(id) != std::string::npos; }));
    EXPECT_EQ(testing::modeOf(historyFile()), 0600u);
    EXPECT_EQ(endHeadless(), 0);
    EXPECT_EQ(std::filesystem::exists(historyFile()), !deletes);
  }
}

TEST_F(Headless, ASecondOneRefusesToStartAndLeavesTheFirstAlone) {
  startHeadless();
  const auto second = launch();
  EXPECT_EQ(second->wait(), 1);
  EXPECT_EQ(second->restOfOutput(), "");
  EXPECT_THAT(second->restOfErrors(), HasSubstr("already running"));
  EXPECT_TRUE(call(ToolName::status).ok);
}

TEST_F(Headless, OfTwoStartsAtOnceNeverMoreThanOneServes) {
  writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = false});
  const auto otherRuntime = directory / "other";
  std::filesystem::create_directories(otherRuntime);
  std::filesystem::permissions(otherRuntime, std::filesystem::perms::owner_all);
  for (int round = 0; round < 40; ++round) {
    const auto first = launch();
    // One data folder in any case; a session over SSH has another runtime directory than the desktop.
    if (round % 2 == 1) environment["XDG_RUNTIME_DIR"] = otherRuntime.string();
    const auto second = launch();
    environment["XDG_RUNTIME_DIR"] = directory.path().string();
    std::size_t serving = 0;
    for (auto* program : {first.get(), second.get()}) {
      if (program->readLine()) {
        ++serving;
        continue;
      }
      EXPECT_EQ(program->wait(), 1);
      EXPECT_THAT(program->restOfErrors(), HasSubstr("Velmora is already running"));
    }
    ASSERT_EQ(serving, 1u) << "in round " << round;
  }
}

TEST_F(Headless, DeletesAtTheNextStartTheHistoryOfARunThatWasKilled) {
  startTmux();
  for (const bool deletes : {true, false}) {
    writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = deletes});
    startHeadless();
    historyOf(textAt(createSession(), "sessionId"));
    ASSERT_TRUE(std::filesystem::exists(historyFile()));
    headless->signal(SIGKILL);
    EXPECT_EQ(headless->wait(), 128 + SIGKILL);
    startHeadless();
    EXPECT_EQ(std::filesystem::exists(historyFile()), !deletes);
    EXPECT_EQ(endHeadless(), 0);
  }
}

TEST_F(Headless, KeepsAPaneBlockedThatTheUserBlockedInAnEarlierRun) {
  startTmux();
  const auto pane = tmux({"display-message", "-p", "-t", "main", "#{pane_id}"});
  const auto server = tmux({"display-message", "-p", "tmux #{start_time} #{pid}"});
  testing::writeFile(directory / "data/Velmora/permissions.json",
                     R"({"schemaVersion":1,"sessions":[{"permission":"blocked","tab":{"tab":")" + pane +
                         R"(","terminal":")" + server + R"("}}]})");
  const auto refusal = [&] {
    const auto sessions = *at(payload(ToolName::listSessions), "sessions").array();
    for (const auto& session : sessions) {
      if (paneOf(textAt(session, "tty")) != pane) continue;
      return call(ToolName::readOutput, {{"sessionId", textAt(session, "sessionId")}}).error;
    }
    return std::optional<StructuredError>();
  };
  startHeadless();
  ASSERT_TRUE(refusal());
  EXPECT_EQ(refusal()->code, ErrorCode::sessionNotAllowed);
  createSession();
  tmux({"split-window", "-d", "-t", "main"});
  tmux({"break-pane", "-d", "-s", pane});
  std::optional<StructuredError> moved;
  EXPECT_TRUE(eventually([&] { return (moved = refusal()).has_value(); }));
  EXPECT_EQ(moved.value().code, ErrorCode::sessionNotAllowed);
  headless->signal(SIGKILL);
  EXPECT_EQ(headless->wait(), 128 + SIGKILL);
  startHeadless();
  ASSERT_TRUE(refusal());
  EXPECT_EQ(refusal()->code, ErrorCode::sessionNotAllowed);
}

TEST_F(Headless, TakesThePlaceOfOneThatWasKilled) {
  startHeadless();
  headless->signal(SIGKILL);
  EXPECT_EQ(headless->wait(), 128 + SIGKILL);
  ASSERT_TRUE(std::filesystem::exists(socketPath()));
  startHeadless();
  EXPECT_TRUE(call(ToolName::status).ok);
}

TEST_F(Headless, RefusesToStartWithUnreadableSettingsAndLosesNothing) {
  testing::writeFile(directory / "data/Velmora/settings.json", R"({"schemaVersion":1,"settings":{},})");
  testing::writeFile(historyFile(), R"({"schemaVersion":1,"records":[]})");
  const auto program = launch();
  EXPECT_EQ(program->wait(), 1);
  EXPECT_EQ(program->restOfOutput(), "");
  EXPECT_THAT(program->restOfErrors(), HasSubstr((directory / "data/Velmora/settings.json").string()));
  EXPECT_TRUE(std::filesystem::exists(directory / "data/Velmora/settings.json"));
  EXPECT_TRUE(std::filesystem::exists(historyFile()));
  EXPECT_FALSE(std::filesystem::exists(socketPath()));
}

TEST_F(Headless, RefusesToStartOnSettingsThatAreNotThereForTheMoment) {
  const auto settings = directory / "data/Velmora/settings.json";
  std::filesystem::create_directories(settings.parent_path());
  std::filesystem::create_symlink(directory / "unmounted/settings.json", settings);
  const auto program = launch();
  EXPECT_EQ(program->wait(), 1);
  EXPECT_THAT(program->restOfErrors(), HasSubstr(settings.string()));

  std::filesystem::remove(settings);
  ASSERT_EQ(::mkfifo(settings.c_str(), 0600), 0);
  const auto other = launch();
  EXPECT_EQ(other->wait(), 1) << "a pipe does not hold the start up";

  std::filesystem::remove_all(directory / "data");
  std::filesystem::create_symlink(directory / "unmounted", directory / "data");
  const auto last = launch();
  EXPECT_EQ(last->wait(), 1);
  EXPECT_THAT(last->restOfErrors(), HasSubstr(settings.string()));
}

TEST_F(Headless, SaysOnStandardErrorWhoChangedWhatAndNothingOfTheContents) {
  startTmux();
  startHeadless();
  const auto id = textAt(createSession(), "sessionId");
  payload(ToolName::sendCommand, {{"sessionId", id}, {"command", "echo a-secret"}});
  headless->signal(SIGTERM);
  EXPECT_EQ(headless->wait(), 0);
  const auto errors = headless->restOfErrors();
  headless.reset();
  EXPECT_THAT(errors,
              HasSubstr("terminal_create_session by \"tester\" \"1.0\", session " + id + ": delivered\n"));
  EXPECT_THAT(errors,
              HasSubstr("terminal_send_command by \"tester\" \"1.0\", session " + id + ": delivered\n"));
  EXPECT_THAT(errors, ::testing::Not(HasSubstr("a-secret")));
}

TEST_F(Headless, ServesOnThoughNobodyReadsItsLog) {
  startTmux();
  startHeadless();
  const FileDescriptor errors(
      ::open(("/proc/" + std::to_string(headless->process()) + "/fd/2").c_str(), O_RDONLY));
  ASSERT_GT(::fcntl(errors.get(), F_SETPIPE_SZ, 4'096), 0);
  const auto id = textAt(at(payload(ToolName::listSessions), "sessions").array()->front(), "sessionId");
  LocalControlClient client(socketPath());
  for (int i = 0; i < 100; ++i) call(client, ToolName::sendKey, {{"sessionId", id}, {"key", "escape"}});
  EXPECT_TRUE(call(client, ToolName::status).ok);
}

TEST_F(Headless, EndsWithAFailureWhenItCanAcceptNoMore) {
  startHeadless();
  const struct rlimit none {};
  ASSERT_EQ(::prlimit(headless->process(), RLIMIT_NOFILE, &none, nullptr), 0);
  const auto unserved = UnixSocketClient::connect(socketPath());
  EXPECT_EQ(headless->wait(), 1);
  EXPECT_THAT(headless->restOfErrors(),
              HasSubstr("accepting has ended until the bridge starts again: accept: "));
  headless.reset();
  EXPECT_FALSE(std::filesystem::exists(socketPath()));
}

TEST_F(Headless, EndsPromptlyThoughTheTmuxServerHangs) {
  startTmux();
  startHeadless();
  const auto server = static_cast<pid_t>(std::stol(tmux({"display-message", "-p", "#{pid}"})));
  ::kill(server, SIGSTOP);
  const auto idle = descriptorCount();
  std::vector<std::thread> clients;
  for (int count = 0; count < 8; ++count) {
    clients.emplace_back([this] {
      try {
        call(ToolName::listSessions);
      } catch (const UnixSocketError&) {  // the bridge went before it could answer
      }
    });
  }
  EXPECT_TRUE(eventually([&] { return descriptorCount() >= idle + clients.size(); }));
  const auto start = std::chrono::steady_clock::now();
  headless->signal(SIGTERM);
  EXPECT_EQ(headless->wait(), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4)) << "one deadline is five";
  headless.reset();
  for (auto& client : clients) client.join();
  ::kill(server, SIGCONT);
}

TEST_F(Headless, SaysWhatItIsAndOfWhichVersion) {
  for (const auto& [option, words] :
       {std::pair{"--help", "Usage: velmora-headless\n"}, std::pair{"-h", "Usage: velmora-headless\n"},
        std::pair{"--version", "velmora-headless 0."}}) {
    const auto program = launch({option});
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(program->restOfOutput(), ::testing::StartsWith(words));
    EXPECT_EQ(program->restOfErrors(), "");
  }
  EXPECT_FALSE(std::filesystem::exists(socketPath()));
}

TEST_F(Headless, SaysWhichPolicyHoldsAndWhichKeysOfTheSettingsNobodyKnows) {
  testing::writeFile(directory / "data/Velmora/settings.json",
                     R"({"schemaVersion":1,"settings":{"sesionPolicy":"selective"}})");
  startHeadless();
  testing::ChildProgram doctor({VELMORA_BIN "/velmora", "doctor"}, environment);
  EXPECT_EQ(doctor.wait(), 1);
  EXPECT_THAT(doctor.restOfOutput(),
              HasSubstr("\nFAIL  settings: no setting is called \"sesionPolicy\" in "));
  headless->signal(SIGTERM);
  EXPECT_EQ(headless->wait(), 0);
  const auto errors = headless->restOfErrors();
  headless.reset();
  EXPECT_THAT(errors, HasSubstr("no setting is called \"sesionPolicy\"\n"));
  EXPECT_THAT(errors, HasSubstr("session policy: safe\n"));
}

TEST_F(Headless, RaisesALowLimitOfDescriptors) {
  struct rlimit before {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  auto low = before;
  low.rlim_cur = 256;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &low), 0);
  startHeadless();
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  struct rlimit raised {};
  ASSERT_EQ(::prlimit(headless->process(), RLIMIT_NOFILE, nullptr, &raised), 0);
  EXPECT_EQ(raised.rlim_cur, std::min<rlim_t>(1024, before.rlim_max));
}

TEST_F(Headless, RefusesArguments) {
  const auto program = launch({"--verbose"});
  EXPECT_EQ(program->wait(), 2);
  EXPECT_EQ(program->restOfOutput(), "");
  EXPECT_EQ(program->restOfErrors(),
            "velmora-headless: takes no arguments but --help and --version, not \"--verbose\"\n");
  EXPECT_FALSE(std::filesystem::exists(socketPath()));
}

TEST_F(Headless, NeverRedirectsTheIdOfAClosedPane) {
  startTmux();
  startHeadless();
  const auto closed = createSession();
  const auto id = textAt(closed, "sessionId");
  const auto tty = textAt(closed, "tty");
  tmux({"kill-pane", "-t", paneOf(tty)});
  ASSERT_TRUE(eventually([&] { return paneOf(tty).empty(); }));
  // The system gives the number of the closed terminal to the next one.
  const auto next = createSession();
  EXPECT_NE(textAt(next, "sessionId"), id);
  const auto refusals = {call(ToolName::sendCommand, {{"sessionId", id}, {"command", "echo astray"}}),
                         call(ToolName::sendKey, {{"sessionId", id}, {"key", "return"}}),
                         call(ToolName::readOutput, {{"sessionId", id}}),
                         call(ToolName::captureScreen, {{"sessionId", id}}),
                         call(ToolName::focusSession, {{"sessionId", id}})};
  for (const auto& refusal : refusals) {
    ASSERT_TRUE(refusal.error.has_value());
    EXPECT_THAT(refusal.error->code, AnyOf(ErrorCode::sessionStale, ErrorCode::sessionNotFound));
  }
  const auto nextId = textAt(next, "sessionId");
  payload(ToolName::sendCommand, {{"sessionId", nextId}, {"command", "echo at-home"}});
  expectInHistory(nextId, "\nat-home");
  EXPECT_THAT(historyOf(nextId), ::testing::Not(HasSubstr("astray")));
}

TEST_F(Headless, SaysThatNoTmuxServerRunsAndStartsOneForANewSession) {
  startHeadless();
  EXPECT_EQ(textAt(at(payload(ToolName::status), "status"), "terminalState"), "notRunning");
  const auto listed = call(ToolName::listSessions);
  ASSERT_TRUE(listed.error.has_value());
  EXPECT_EQ(listed.error->code, ErrorCode::terminalNotRunning);
  EXPECT_EQ(listed.error->message, "No tmux server is running.");
  EXPECT_FALSE(std::filesystem::exists(tmuxSocket()));
  const auto id = textAt(createSession(), "sessionId");
  EXPECT_TRUE(std::filesystem::exists(tmuxSocket()));
  payload(ToolName::sendCommand, {{"sessionId", id}, {"command", "echo started-$((1 + 1))"}});
  expectInHistory(id, "\nstarted-2");
}

TEST_F(Headless, ServesTwoClientsAtOnce) {
  startTmux();
  startHeadless();
  const auto work = [this](const std::string& name) {
    const auto id = textAt(createSession(), "sessionId");
    for (int round = 0; round < 5; ++round) {
      const auto number = std::to_string(round);
      payload(ToolName::sendCommand,
              {{"sessionId", id}, {"command", "echo " + name + "-$((0 + " + number + "))"}});
      expectInHistory(id, "\n" + name + "-" + number);
    }
    return historyOf(id);
  };
  std::string first;
  std::thread other([&] { first = work("first"); });
  const auto second = work("second");
  other.join();
  EXPECT_THAT(first, ::testing::Not(HasSubstr("second")));
  EXPECT_THAT(second, ::testing::Not(HasSubstr("first")));
}

TEST_F(Headless, IsFoundByTheHelperThatAnMcpClientLaunches) {
  startHeadless();
  testing::ChildProgram helper({VELMORA_BIN "/velmora"}, {{"HOME", directory.path().string()},
                                                          {"XDG_RUNTIME_DIR", directory.path().string()}});
  helper.write(R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2025-11-25",)"
               R"("capabilities":{},"clientInfo":{"name":"tester","version":"1.0"}}})"
               "\n");
  EXPECT_THAT(helper.readLine().value_or(""), HasSubstr(R"("id":0,"result")"));
  helper.write(R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"terminal_status"}})"
               "\n");
  EXPECT_THAT(helper.readLine().value_or(""), HasSubstr(R"("terminalState":"notRunning")"));
  helper.closeInput();
  EXPECT_EQ(helper.wait(), 0);
}

TEST_F(Headless, AClientThatLeavesInMidCallDisturbsNobody) {
  startTmux();
  startHeadless();
  LocalControlClient steady(socketPath());
  const auto frame = LocalControlCodec::frame(LocalControlRequest{.requestId = Uuid::random(),
                                                                  .client = {"tester", std::nullopt, 1},
                                                                  .operation = ToolName::listSessions});
  for (int round = 0; round < 20; ++round) {
    UnixSocketClient::connect(socketPath()).writeFrame(frame);
    UnixSocketClient::connect(socketPath()).writeFrame(frame.substr(0, frame.size() / 2));
    UnixSocketClient::connect(socketPath()).writeFrame("\xFF\xFF\xFF\xFFno frame");
    EXPECT_TRUE(call(steady, ToolName::listSessions).ok);
  }
}

TEST_F(Headless, HoldsNoMoreDescriptorsAfter300Connections) {
  startTmux();
  startHeadless();
  EXPECT_TRUE(call(ToolName::listSessions).ok);
  const auto request = ofAnotherVersion();
  std::size_t before = 0;
  // The thread of the last connection may still be at work: the count is taken when it has come to rest.
  ASSERT_TRUE(eventually([&] { return std::exchange(before, descriptorCount()) == descriptorCount(); }));
  for (int round = 0; round < 300; ++round) {
    LocalControlClient client(socketPath());
    ASSERT_FALSE(client.send(request).ok);
    ASSERT_TRUE(round % 50 != 0 || call(client, ToolName::listSessions).ok);
  }
  EXPECT_TRUE(eventually([&] { return descriptorCount() <= before; }))
      << descriptorCount() << " descriptors, " << before << " before";
}

}  // namespace
}  // namespace velmora
