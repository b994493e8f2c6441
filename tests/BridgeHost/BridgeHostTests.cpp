#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <fstream>
#include <future>

#include "BridgeHost/BridgeHost.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "LocalControl/LocalControlClient.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketClient.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "tests/LocalControl/OtherUser.h"
#include "tests/support/FakeTerminal.h"
#include "tests/support/FakeTime.h"
#include "tests/support/LogLines.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::numberedUuid;
using testing::tab;

class BridgeHostTest : public ::testing::Test {
 protected:
  BridgeHostOptions options() {
    return {.environment = {{"HOME", directory.path().string()},
                            {"XDG_DATA_HOME", (directory / "data").string()},
                            {"XDG_RUNTIME_DIR", directory.path().string()}},
            .makeTerminal =
                [this](const std::filesystem::path& temporaryDirectory) {
                  temporaryDirectoryGiven = temporaryDirectory;
                  auto made = std::make_unique<testing::FakeTerminal>();
                  terminal = made.get();
                  terminal->tabs = {tab("/dev/ttys001", 11)};
                  return made;
                },
            .acceptingEnded = [this](const std::string& reason) { acceptingEnded.set_value(reason); },
            .log = log.log(),
            .now = time.clock(),
            .uuid = testing::countingUuids()};
  }

  void writeFile(const std::string& name, const std::string& text) {
    std::filesystem::create_directories(directory / "data/Velmora");
    std::ofstream(directory / "data/Velmora" / name) << text;
  }
  void writeSettings(const PrivacyRetentionSettings& settings) {
    writeFile("settings.json", R"({"schemaVersion":1,"settings":)" + encodeJson(settings) + "}");
  }
  bool exists(const std::string& name) const {
    return std::filesystem::exists(directory / "data/Velmora" / name);
  }

  static void expectLoads(BridgeHost& host) {
    const auto problems = host.loadLocalState();
    EXPECT_FALSE(problems.settings) << *problems.settings;
    EXPECT_FALSE(problems.history) << *problems.history;
  }

  LocalControlResponse call(BridgeHost& host, ToolName tool, JSONObject arguments = {}) {
    LocalControlClient client(host.socketURL());
    return client.send({.requestId = numberedUuid(900),
                        .client = {"test", std::nullopt, 1},
                        .operation = tool,
                        .arguments = std::move(arguments)});
  }

  TemporaryDirectory directory;
  testing::FakeTime time{800000000};
  testing::LogLines log;
  std::promise<std::string> acceptingEnded;
  testing::FakeTerminal* terminal = nullptr;
  std::filesystem::path temporaryDirectoryGiven;
};

TEST_F(BridgeHostTest, ServesCallsFromTheSocketToTheTerminal) {
  BridgeHost host(options());
  EXPECT_EQ(host.socketURL(), directory / "app.velmora.Velmora/control-v1.sock");
  EXPECT_EQ(temporaryDirectoryGiven, directory.path());
  expectLoads(host);
  host.startServing();
  const auto listed = call(host, ToolName::listSessions);
  ASSERT_TRUE(listed.ok);
  const auto id = *listed.data->find("sessions")->array()->front().find("sessionId")->string();
  EXPECT_TRUE(call(host, ToolName::sendCommand, {{"sessionId", id}, {"command", "ls"}}).ok);
  EXPECT_EQ(terminal->calls().back(), "send(ls, /dev/ttys001, 11)");
  EXPECT_EQ(host.coordinator().recorder().snapshot().size(), 2u);
}

TEST_F(BridgeHostTest, UsersWhoWatchLeaveRoomForOneWhoPauses) {
  BridgeHost host(options());
  expectLoads(host);
  host.startServing();
  const auto connect = [&] {
    return UnixSocketClient::connect(UnixSocketEndpoint::personURL(host.socketURL()));
  };
  const auto isAnsweredOk = [](UnixSocketConnection& connection, PersonVerb verb) {
    connection.writeFrame(LocalControlCodec::frame(PersonRequest{.operation = verb}));
    pollfd answer{.fd = connection.descriptor(), .events = POLLIN, .revents = 0};
    return ::poll(&answer, 1, 20'000) == 1 &&
           LocalControlCodec::decode<LocalControlResponse>(connection.readFrame()).ok;
  };
  // As the screens of `velmora watch` connect: one asks and one hears, and who hears nothing leaves.
  std::vector<UnixSocketConnection> screens;
  for (int screen = 0; screen < 8; ++screen) {
    auto asks = connect();
    auto hears = connect();
    if (!isAnsweredOk(asks, PersonVerb::status) || !isAnsweredOk(hears, PersonVerb::events)) continue;
    screens.push_back(std::move(asks));
    screens.push_back(std::move(hears));
  }
  EXPECT_EQ(screens.size(), 2 * RequestFeed::mostWatchers);
  auto user = connect();
  ASSERT_TRUE(isAnsweredOk(user, PersonVerb::pause));
  EXPECT_EQ(host.coordinator().operationState().current(), MCPState::paused);
}

TEST_F(BridgeHostTest, LoadsTheUsersSettingsAndPolicy) {
  writeSettings({.allowBusySessionInput = true, .sessionPolicy = SessionPolicy::selective});
  BridgeHost host(options());
  expectLoads(host);
  EXPECT_TRUE(host.coordinator().settingsStore().current().allowBusySessionInput);
  const auto sessions =
      host.coordinator().listSessions(numberedUuid(1), {"c", std::nullopt}, {}).data->sessions;
  EXPECT_EQ(sessions[0].permission, SessionPermission::readOnly);
}

TEST_F(BridgeHostTest, PutsALoadedHistoryBeforeThatOfTheRun) {
  writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = false});
  {
    BridgeHost earlier(options());
    earlier.loadLocalState();
    const auto id =
        earlier.coordinator().listSessions(numberedUuid(1), {"c", std::nullopt}, {}).data->sessions[0];
    time.advance(1);
    earlier.coordinator().sendCommand(numberedUuid(2), {"c", std::nullopt}, {id.sessionId, "ls"});
    earlier.prepareForTermination();
  }
  ASSERT_TRUE(exists("history.json"));
  time.advance(1);
  BridgeHost host(options());
  host.coordinator().status(numberedUuid(3), {"c", std::nullopt});
  expectLoads(host);
  std::vector<Uuid> ids;
  for (const auto& record : host.coordinator().recorder().snapshot()) ids.push_back(record.requestId);
  EXPECT_EQ(ids, (std::vector{numberedUuid(1), numberedUuid(2), numberedUuid(3)}));
}

TEST_F(BridgeHostTest, WhatCannotBeReadIsNamedAndStays) {
  writeFile("settings.json", "{");
  {
    BridgeHost host(options());
    const auto problems = host.loadLocalState();
    EXPECT_TRUE(problems.settings);
    EXPECT_FALSE(problems.history);
    EXPECT_EQ(host.coordinator().settingsStore().current(), PrivacyRetentionSettings{});
    EXPECT_TRUE(exists("settings.json"));
  }
  writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = false});
  writeFile("history.json", "no history");
  BridgeHost host(options());
  const auto problems = host.loadLocalState();
  EXPECT_FALSE(problems.settings);
  ASSERT_TRUE(problems.history);
  EXPECT_EQ(
      *problems.history,
      "Stored history could not be read. Check local disk permissions and available space, then retry.");
  EXPECT_TRUE(exists("history.json"));
  const auto session =
      host.coordinator().listSessions(numberedUuid(1), {"c", std::nullopt}, {}).data->sessions[0];
  EXPECT_TRUE(
      host.coordinator().sendCommand(numberedUuid(2), {"c", std::nullopt}, {session.sessionId, "ls"}).ok);
  EXPECT_TRUE(exists("history.json.unreadable"));
  host.coordinator().clearHistory();
  EXPECT_FALSE(exists("history.json"));
  EXPECT_FALSE(exists("history.json.unreadable"));
}

TEST_F(BridgeHostTest, DeletesTheHistoryOnExitOnlyWhenAsked) {
  for (const bool deletes : {true, false}) {
    writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = deletes});
    writeFile("history.json", R"({"schemaVersion":1,"records":[]})");
    writeFile("history.json.unreadable", "old");
    BridgeHost host(options());
    host.loadLocalState();
    host.prepareForTermination();
    EXPECT_EQ(exists("history.json"), !deletes);
    EXPECT_EQ(exists("history.json.unreadable"), !deletes);
  }
}

TEST_F(BridgeHostTest, DeletesNothingOnExitWhenTheSettingsAreUnreadable) {
  writeFile("settings.json", "{");
  writeFile("history.json", R"({"schemaVersion":1,"records":[]})");
  BridgeHost host(options());
  host.loadLocalState();
  host.prepareForTermination();
  EXPECT_TRUE(exists("history.json"));
}

TEST_F(BridgeHostTest, KeepsWhatCameAfterTheLastSaveAtTheEnd) {
  writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = false});
  {
    BridgeHost host(options());
    expectLoads(host);
    host.coordinator().status(numberedUuid(1), {"c", std::nullopt});
    EXPECT_FALSE(exists("history.json"));
    host.prepareForTermination();
  }
  BridgeHost next(options());
  expectLoads(next);
  EXPECT_EQ(next.coordinator().recorder().snapshot().at(0).requestId, numberedUuid(1));
}

TEST_F(BridgeHostTest, SaysWhenTheServerAcceptsNoMore) {
  BridgeHost host(options());
  host.startServing();
  EXPECT_EQ(log.count("info socket: serving at " + host.socketURL().string()), 1u);
  const FileDescriptor late = SocketPlatform::openStreamSocket();
  const auto address = UnixSocketEndpoint::address(host.socketURL());
  const NoMoreDescriptors limit;
  ASSERT_EQ(
      ::connect(late.get(), reinterpret_cast<const sockaddr*>(&address), UnixSocketEndpoint::addressLength),
      0);
  EXPECT_EQ(acceptingEnded.get_future().get(), "accept: Too many open files");
  EXPECT_EQ(log.count("error socket: accepting has ended"), 1u);
}

TEST_F(BridgeHostTest, ServesAgainAfterItAcceptedNoMore) {
  BridgeHost host(options());
  host.startServing();
  {
    const FileDescriptor late = SocketPlatform::openStreamSocket();
    const auto address = UnixSocketEndpoint::address(host.socketURL());
    const NoMoreDescriptors limit;
    ASSERT_EQ(
        ::connect(late.get(), reinterpret_cast<const sockaddr*>(&address), UnixSocketEndpoint::addressLength),
        0);
    acceptingEnded.get_future().wait();
  }
  host.renewServer();
  EXPECT_EQ(host.serverProblem(), "");
  host.startServing();
  EXPECT_TRUE(call(host, ToolName::listSessions).ok);
}

TEST_F(BridgeHostTest, LeavesTheSocketToABridgeThatServesThere) {
  BridgeHost first(options());
  first.startServing();
  const auto* terminalOfTheFirst = terminal;
  {
    BridgeHost second(options());
    EXPECT_EQ(second.localServer(), nullptr);
    EXPECT_EQ(second.serverProblem(), "Velmora is already running there");
  }
  {
    auto elsewhere = options();
    elsewhere.environment["XDG_DATA_HOME"] = (directory / "other").string();
    BridgeHost second(elsewhere);
    EXPECT_EQ(second.localServer(), nullptr);
    EXPECT_EQ(second.serverProblem(), "Velmora is already running there");
    ASSERT_TRUE(second.otherBridge());
    EXPECT_EQ(second.otherBridge()->process, ::getpid());
  }
  EXPECT_TRUE(call(first, ToolName::listSessions).ok);
  EXPECT_EQ(terminalOfTheFirst->callCount("listSessions"), 1u);
}

TEST_F(BridgeHostTest, ChangesNothingInADataFolderThatAnotherBridgeHas) {
  writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = true});
  writeFile("history.json", R"({"schemaVersion":1,"records":[]})");
  BridgeHost first(options());
  expectLoads(first);
  auto elsewhere = options();
  elsewhere.environment["XDG_RUNTIME_DIR"] = (directory / "run").string();
  {
    BridgeHost second(elsewhere);
    EXPECT_EQ(second.localServer(), nullptr);
    EXPECT_EQ(second.serverProblem(), "Velmora is already running as process " + std::to_string(::getpid()) +
                                          " and keeps its data in " + (directory / "data/Velmora").string());
    // The lock names this process, and no bridge is called like the test program.
    ASSERT_TRUE(second.otherBridge());
    EXPECT_FALSE(second.otherBridge()->process);
    EXPECT_THROW(second.endOther(::getpid()), std::runtime_error);
    expectLoads(second);
    EXPECT_THROW(second.coordinator().applySettings({.retentionDays = 3}), std::system_error);
    EXPECT_THROW(second.coordinator().clearHistory(), StructuredError);
    second.prepareForTermination();
  }
  EXPECT_TRUE(exists("history.json"));
  EXPECT_EQ(first.coordinator().settingsStore().load().retentionDays, 7);
  first.prepareForTermination();
  EXPECT_FALSE(exists("history.json"));
}

TEST_F(BridgeHostTest, UsesADataFolderThatCannotBeLockedAndSaysSo) {
  std::filesystem::create_directories(directory / "data/Velmora/bridge.lock");
  BridgeHost host(options());
  expectLoads(host);
  EXPECT_NE(host.localServer(), nullptr);
  host.coordinator().applySettings({.retentionDays = 3});
  EXPECT_TRUE(exists("settings.json"));
  EXPECT_EQ(log.count("would not be noticed"), 1u);
}

TEST_F(BridgeHostTest, DeletesAtItsStartWhatARunThatWasCutShortWasToDelete) {
  for (const bool deletes : {true, false}) {
    for (const bool cutShort : {true, false}) {
      writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = deletes});
      {
        BridgeHost host(options());
        expectLoads(host);
        if (!cutShort) host.prepareForTermination();
      }
      writeFile("history.json", R"({"schemaVersion":1,"records":[]})");
      writeFile("history.json.tmp.1", "half a save");
      BridgeHost next(options());
      EXPECT_FALSE(exists("history.json.tmp.1"));
      expectLoads(next);
      EXPECT_EQ(exists("history.json"), !(deletes && cutShort));
      next.prepareForTermination();
    }
  }
}

TEST_F(BridgeHostTest, RemembersThatARunWasCutShortUntilItIsDealtWith) {
  writeSettings({.persistentHistoryEnabled = true});
  { BridgeHost(options()).loadLocalState(); }
  writeFile("history.json", R"({"schemaVersion":1,"records":[]})");
  { const BridgeHost neverLoads(options()); }
  BridgeHost next(options());
  expectLoads(next);
  EXPECT_FALSE(exists("history.json"));
}

TEST_F(BridgeHostTest, WorksWithoutAServerAndSaysWhy) {
  std::filesystem::create_directories(directory / "app.velmora.Velmora");
  std::ofstream(directory / "app.velmora.Velmora/control-v1.sock") << "a regular file";
  BridgeHost host(options());
  EXPECT_EQ(host.localServer(), nullptr);
  EXPECT_FALSE(host.serverProblem().empty());
  host.startServing();
  EXPECT_TRUE(host.coordinator().status(numberedUuid(1), {"c", std::nullopt}).ok);
}

TEST_F(BridgeHostTest, AnAdapterThatCannotBeMadeIsReplacedByTheStandBy) {
  auto broken = options();
  broken.makeTerminal = [](const auto&) -> std::unique_ptr<TerminalAutomating> {
    throw PlatformError("Velmora.AppleScript", -2700, "Bundled Terminal AppleScript failed to compile.");
  };
  BridgeHost host(broken);
  const auto status = host.coordinator().status(numberedUuid(1), {"c", std::nullopt}).data->status;
  EXPECT_EQ(status.terminalState, TerminalState::notRunning);
  EXPECT_EQ(host.coordinator().listSessions(numberedUuid(2), {"c", std::nullopt}, {}).error->code,
            ErrorCode::appleScriptExecutionFailed);
  EXPECT_EQ(
      log.count(
          "error terminal: the adapter could not be made: Bundled Terminal AppleScript failed to compile."),
      1u);
}

}  // namespace
}  // namespace velmora
