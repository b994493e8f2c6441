#include <gmock/gmock.h>

#include <filesystem>
#include <functional>

#include "BridgeCore/BridgeCoordinator.h"
#include "BridgeCore/ErrorCatalogue.h"
#include "System/Utf8.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Files.h"
#include "tests/support/LogLines.h"
#include "tests/support/SampleRecords.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::numberedUuid;
using testing::tab;

const ClientIdentitySummary client{"test client", "1.0"};
const Uuid request = numberedUuid(500);

class BridgeCoordinatorTest : public testing::CoreFixture {
 protected:
  MCPRequestRecord lastRecord() { return recorder.snapshot().back(); }

  void keepHistory() {
    settingsStore.save(
        {.persistentHistoryEnabled = true, .storeCommandBody = true, .storeOutputPreview = true});
  }

  bool historyExists() const { return std::filesystem::exists(historyStore.fileURL()); }

  SessionPermission permissionOfANewTab() {
    ++newTabs;
    terminal.tabs = {tab("/dev/ttys10" + std::to_string(newTabs), 100 + newTabs)};
    return coordinator.listSessions(request, client, {}).data->sessions[0].permission;
  }

  testing::LogLines log;
  RequestRecorder recorder{time.clock()};
  HistoryStore historyStore{files, directory.path() / "Velmora" / "history.json"};
  BridgeCoordinator coordinator{terminal,      registry,     state,        recorder,
                                settingsStore, historyStore, time.clock(), log.log()};
  int newTabs = 0;
};

TEST_F(BridgeCoordinatorTest, EveryToolAnswersAndLeavesARecord) {
  const auto id = registerTab();
  const auto expect = [&](ToolName tool, RequestStatus status, auto result) {
    EXPECT_TRUE(result.ok) << wireName(tool);
    EXPECT_TRUE(result.data) << wireName(tool);
    EXPECT_EQ(result.requestId, request);
    EXPECT_EQ(result.error, std::nullopt);
    const auto record = lastRecord();
    EXPECT_EQ(record.requestId, request);
    EXPECT_EQ(record.client, client);
    EXPECT_EQ(record.toolName, tool);
    EXPECT_EQ(record.status, status) << wireName(tool);
    EXPECT_EQ(record.error, std::nullopt);
    EXPECT_EQ(record.durationMilliseconds, 0);
    const bool namesSession = tool >= ToolName::sendCommand;
    const auto expected = namesSession ? std::optional(SessionReference{.sessionId = id}) : std::nullopt;
    EXPECT_EQ(record.sessionSnapshot, expected) << wireName(tool);
    recorder.replace({});
  };
  expect(ToolName::status, RequestStatus::readComplete, coordinator.status(request, client));
  expect(ToolName::listSessions, RequestStatus::readComplete, coordinator.listSessions(request, client, {}));
  expect(ToolName::getActiveSession, RequestStatus::readComplete, coordinator.activeSession(request, client));
  expect(ToolName::createSession, RequestStatus::delivered, coordinator.createSession(request, client, {}));
  expect(ToolName::sendCommand, RequestStatus::delivered,
         coordinator.sendCommand(request, client, {id, "ls"}));
  expect(ToolName::sendKey, RequestStatus::delivered,
         coordinator.sendKey(request, client, {id, TerminalKey::tab, 1}));
  expect(ToolName::readOutput, RequestStatus::readComplete,
         coordinator.readOutput(request, client, {.sessionId = id}));
  expect(ToolName::captureScreen, RequestStatus::readComplete,
         coordinator.captureScreen(request, client, {id}));
  expect(ToolName::focusSession, RequestStatus::delivered, coordinator.focusSession(request, client, {id}));
}

TEST_F(BridgeCoordinatorTest, APauseStopsTheFourChangesOnly) {
  const auto id = registerTab();
  coordinator.setPaused(true);
  const auto expectPaused = [&](ToolName tool, const auto& result) {
    EXPECT_FALSE(result.ok);
    EXPECT_FALSE(result.data);
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->code, ErrorCode::mcpPaused);
    EXPECT_EQ(result.error->operation, wireName(tool));
    EXPECT_EQ(lastRecord().status, RequestStatus::rejected);
    EXPECT_EQ(lastRecord().error, result.error);
  };
  const auto creation = coordinator.createSession(request, client, {});
  expectPaused(ToolName::createSession, creation);
  EXPECT_EQ(creation.error->session, std::nullopt);
  recorder.replace({});
  const auto focusing = coordinator.focusSession(request, client, {id});
  expectPaused(ToolName::focusSession, focusing);
  EXPECT_EQ(focusing.error->session, SessionReference{.sessionId = id});
  recorder.replace({});
  expectPaused(ToolName::sendCommand, coordinator.sendCommand(request, client, {id, "ls"}));
  recorder.replace({});
  expectPaused(ToolName::sendKey, coordinator.sendKey(request, client, {id, TerminalKey::tab, 1}));
  EXPECT_EQ(terminal.callCount("createWindow") + terminal.callCount("focus") + terminal.callCount("send") +
                terminal.callCount("sendKey"),
            0u);
  EXPECT_TRUE(coordinator.status(request, client).ok);
  EXPECT_TRUE(coordinator.listSessions(request, client, {}).ok);
  EXPECT_TRUE(coordinator.activeSession(request, client).ok);
  EXPECT_TRUE(coordinator.readOutput(request, client, {.sessionId = id}).ok);
  EXPECT_TRUE(coordinator.captureScreen(request, client, {id}).ok);
  coordinator.setPaused(false);
  EXPECT_TRUE(coordinator.focusSession(request, client, {id}).ok);
}

TEST_F(BridgeCoordinatorTest, OnlyAutomationAndInternalFailuresCountAsFailed) {
  const auto statusAfter = [&](std::int64_t code) {
    terminal.failWith("listSessions", PlatformError("d", code));
    const auto result = coordinator.listSessions(request, client, {});
    EXPECT_FALSE(result.ok);
    const auto status = lastRecord().status;
    recorder.replace({});
    return status;
  };
  EXPECT_EQ(statusAfter(-1708), RequestStatus::failed);
  EXPECT_EQ(statusAfter(-600), RequestStatus::rejected);
  EXPECT_EQ(statusAfter(-1743), RequestStatus::rejected);
  terminal.failWith("listSessions", StructuredError{.code = ErrorCode::internalError});
  coordinator.listSessions(request, client, {});
  EXPECT_EQ(lastRecord().status, RequestStatus::failed);
}

TEST_F(BridgeCoordinatorTest, AValidationErrorIsAnInvalidArgumentOfTheTool) {
  const auto id = registerTab();
  const auto result = coordinator.sendCommand(request, client, {id, ""});
  ASSERT_TRUE(result.error);
  EXPECT_EQ(*result.error, catalogue::invalidArgument("Command must not be empty.", "terminal_send_command",
                                                      SessionReference{.sessionId = id}));
  EXPECT_EQ(lastRecord().status, RequestStatus::rejected);
}

TEST_F(BridgeCoordinatorTest, TheStatusServiceLearnsOfFailuresAndOfStatusCalls) {
  terminal.failWith("listSessions", PlatformError("d", -600));
  const auto failure = coordinator.listSessions(numberedUuid(1), client, {});
  auto status = coordinator.statusService().snapshot();
  EXPECT_EQ(status.lastRequestId, numberedUuid(1));
  EXPECT_EQ(status.lastError, failure.error);
  terminal.failures.clear();
  coordinator.listSessions(numberedUuid(2), client, {});
  EXPECT_EQ(coordinator.statusService().snapshot().lastRequestId, numberedUuid(1)) << "successes go unnoted";
  const auto answer = coordinator.status(numberedUuid(3), client);
  EXPECT_EQ(answer.data->status.lastError, failure.error)
      << "the answer shows what was known when it was made";
  status = coordinator.statusService().snapshot();
  EXPECT_EQ(status.lastRequestId, numberedUuid(3));
  EXPECT_EQ(status.lastError, std::nullopt);
}

TEST_F(BridgeCoordinatorTest, CommandsAndReadsAreKeptAsTheSettingsAllow) {
  keepHistory();
  const auto id = registerTab();
  coordinator.sendCommand(numberedUuid(1), client, {id, "make\ntest"});
  EXPECT_EQ(lastRecord().commandBody, "make\ntest");
  EXPECT_EQ(lastRecord().commandSummary, "make\ntest");
  EXPECT_EQ(lastRecord().outputPreview, std::nullopt);
  EXPECT_EQ(historyStore.load().size(), 1u);
  time.advance(1);
  coordinator.readOutput(numberedUuid(2), client, {.sessionId = id});
  const auto stored = historyStore.load();
  ASSERT_EQ(stored.size(), 2u);
  EXPECT_EQ(stored[0].requestId, numberedUuid(2)) << "the file is newest first";
  EXPECT_EQ(stored[0].outputPreview, "output");
  EXPECT_EQ(stored[0].outputCharacterCount, 6);
  EXPECT_EQ(stored[0].outputTruncated, false);
  EXPECT_EQ(stored[0].commandBody, std::nullopt);
}

TEST_F(BridgeCoordinatorTest, OtherToolsReachTheFileWithTheNextWrite) {
  keepHistory();
  const auto id = registerTab();
  coordinator.listSessions(request, client, {});
  coordinator.sendKey(request, client, {id, TerminalKey::tab, 1});
  coordinator.captureScreen(request, client, {id});
  EXPECT_FALSE(historyExists());
  coordinator.readOutput(request, client, {.sessionId = id});
  EXPECT_EQ(historyStore.load().size(), 4u);
}

TEST_F(BridgeCoordinatorTest, AFailedCallWritesNoHistory) {
  keepHistory();
  const auto id = registerTab();
  coordinator.setPaused(true);
  EXPECT_FALSE(coordinator.sendCommand(request, client, {id, "ls"}).ok);
  EXPECT_FALSE(historyExists());
  EXPECT_EQ(lastRecord().commandBody, std::nullopt);
}

TEST_F(BridgeCoordinatorTest, AFailedHistoryWriteFailsTheCallThoughTheCommandArrived) {
  keepHistory();
  const auto id = registerTab();
  std::filesystem::create_directory(historyStore.fileURL());  // a directory stands where the file should go
  std::filesystem::create_directory(historyStore.fileURL() / "inside");
  const auto result = coordinator.sendCommand(request, client, {id, "ls"});
  EXPECT_FALSE(result.ok);
  ASSERT_TRUE(result.error);
  EXPECT_EQ(result.error->code, ErrorCode::historyStorageFailed);
  EXPECT_EQ(result.error->operation, "history_storage");
  EXPECT_EQ(terminal.callCount("send"), 1u);
  EXPECT_EQ(lastRecord().status, RequestStatus::rejected);
  EXPECT_EQ(lastRecord().error, result.error);
}

TEST_F(BridgeCoordinatorTest, ATruncatedReadSucceedsWithAWarning) {
  const auto id = registerTab();
  terminal.output = {"0123456789", OutputSource::visible, 10};
  const auto result = coordinator.readOutput(request, client, {id, OutputSource::visible, 3});
  EXPECT_TRUE(result.ok);
  ASSERT_EQ(result.warnings.size(), 1u);
  EXPECT_EQ(result.warnings[0].code, ErrorCode::outputTruncated);
  EXPECT_EQ(lastRecord().outputCharacterCount, 3);
  EXPECT_EQ(lastRecord().outputTruncated, true);
}

TEST_F(BridgeCoordinatorTest, WhatAClientCallsItselfIsCutShortInItsRecords) {
  std::string stacked = "a";  // one character with very many accents
  while (stacked.size() < 1'000'000) stacked += "\u0301";
  coordinator.status(request, {std::string(1'000'000, 'n'), stacked});
  const auto& record = lastRecord();
  EXPECT_EQ(record.client.name, std::string(200, 'n'));
  EXPECT_LE(record.client.version->size(), 1600u);
  EXPECT_TRUE(isValidUtf8(*record.client.version));
  coordinator.status(request, {"벨모라", std::nullopt});
  EXPECT_EQ(lastRecord().client, (ClientIdentitySummary{"벨모라", std::nullopt}));
}

TEST_F(BridgeCoordinatorTest, TwoCallsOfOneIdUpdateTheFirstRecord) {
  coordinator.listSessions(request, client, {});
  terminal.failWith("listSessions", PlatformError("d", -600));
  coordinator.listSessions(request, client, {});
  const auto records = recorder.snapshot();
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].status, RequestStatus::rejected);
  EXPECT_EQ(records[1].status, RequestStatus::processing);
}

TEST_F(BridgeCoordinatorTest, AClockThatGoesBackGivesNoNegativeDuration) {
  auto step = 100.0;
  const Clock backwards = [&] { return Date{step -= 10}; };
  RequestRecorder ownRecorder(backwards);
  BridgeCoordinator own(terminal, registry, state, ownRecorder, settingsStore, historyStore, backwards);
  own.listSessions(request, client, {});
  EXPECT_EQ(ownRecorder.snapshot()[0].durationMilliseconds, 0);
}

TEST_F(BridgeCoordinatorTest, ACallMarksTheSessionThatItNames) {
  const auto id = registerTab();
  EXPECT_EQ(registry.session(id).lastRequestAt, std::nullopt);
  time.advance(9);
  coordinator.setPaused(true);
  coordinator.focusSession(request, client, {id});
  EXPECT_EQ(registry.session(id).lastRequestAt, time.now()) << "a refused call names it too";
  EXPECT_FALSE(coordinator.captureScreen(request, client, {numberedUuid(99)}).ok);
}

TEST_F(BridgeCoordinatorTest, PermissionChangesLeaveNoRecord) {
  const auto id = registerTab();
  EXPECT_EQ(coordinator.setPermission(SessionPermission::blocked, id).permission, SessionPermission::blocked);
  EXPECT_EQ(coordinator.changeSessionPermission(SessionPermission::allowed, id).permission,
            SessionPermission::allowed);
  EXPECT_EQ(registry.session(id).permission, SessionPermission::allowed);
  EXPECT_EQ(
      testing::structuredError([&] { coordinator.setPermission(SessionPermission::allowed, Uuid{}); }).code,
      ErrorCode::sessionNotFound);
  EXPECT_TRUE(recorder.snapshot().empty());
}

TEST_F(BridgeCoordinatorTest, ThePolicyReachesTheSessionService) {
  coordinator.setSessionPolicy(SessionPolicy::selective);
  terminal.tabs = {tab("/dev/ttys001")};
  EXPECT_EQ(coordinator.listSessions(request, client, {}).data->sessions[0].permission,
            SessionPermission::readOnly);
}

TEST_F(BridgeCoordinatorTest, ClearingTheHistoryEmptiesMemoryAndDisk) {
  keepHistory();
  const auto id = registerTab();
  coordinator.sendCommand(request, client, {id, "ls"});
  ASSERT_TRUE(historyExists());
  coordinator.clearHistory();
  EXPECT_TRUE(recorder.snapshot().empty());
  EXPECT_FALSE(historyExists());
}

TEST_F(BridgeCoordinatorTest, AppliesSettingsToThePolicyAndToWhatIsKept) {
  coordinator.applySettings(
      {.persistentHistoryEnabled = true, .storeCommandBody = true, .deleteOnAppExit = false});
  const auto id = registerTab();
  coordinator.sendCommand(request, client, {id, "ls"});
  EXPECT_EQ(historyStore.load()[0].commandBody, "ls");
  coordinator.applySettings({.persistentHistoryEnabled = true,
                             .maximumRecordCount = 50000,
                             .sessionPolicy = SessionPolicy::selective});
  EXPECT_EQ(settingsStore.load().maximumRecordCount, 10000);
  EXPECT_EQ(permissionOfANewTab(), SessionPermission::readOnly);
  EXPECT_EQ(historyStore.load()[0].commandBody, std::nullopt);
  EXPECT_EQ(recorder.snapshot()[0].commandBody, std::nullopt);
  coordinator.applySettings({});
  EXPECT_EQ(permissionOfANewTab(), SessionPermission::managed);
  EXPECT_FALSE(historyExists());
}

TEST_F(BridgeCoordinatorTest, WhatMayNoLongerBeStoredGoesWithAnUnreadableHistoryThatWasKept) {
  const auto unreadable = placeOfUnreadable(historyStore.fileURL());
  for (const auto& before :
       {PrivacyRetentionSettings{.persistentHistoryEnabled = true, .storeCommandBody = true},
        {.persistentHistoryEnabled = true, .storeOutputPreview = true}}) {
    testing::writeFile(unreadable, "perhaps with command texts");
    coordinator.applySettings(before);
    auto after = before;
    after.retentionDays = 30;
    coordinator.applySettings(after);
    EXPECT_TRUE(std::filesystem::exists(unreadable)) << "nothing was switched off";
    coordinator.applySettings({.persistentHistoryEnabled = true});
    EXPECT_FALSE(std::filesystem::exists(unreadable));
  }
}

TEST_F(BridgeCoordinatorTest, SettingsThatCannotBeSavedChangeNothing) {
  keepHistory();
  const auto id = registerTab();
  coordinator.sendCommand(request, client, {id, "ls"});
  std::filesystem::remove(settingsStore.fileURL());
  std::filesystem::create_directories(settingsStore.fileURL() / "a folder in its place");
  EXPECT_THROW(coordinator.applySettings({.sessionPolicy = SessionPolicy::selective}), std::system_error);
  EXPECT_EQ(lastRecord().commandBody, "ls");
  EXPECT_TRUE(historyExists());
  EXPECT_EQ(permissionOfANewTab(), SessionPermission::managed);
}

TEST_F(BridgeCoordinatorTest, SettingsAreSavedAlthoughTheHistoryCannotBeDeleted) {
  std::filesystem::create_directories(historyStore.fileURL() / "a folder in its place");
  EXPECT_EQ(testing::structuredError([&] {
              coordinator.applySettings({.sessionPolicy = SessionPolicy::selective});
            }).code,
            ErrorCode::historyStorageFailed);
  EXPECT_EQ(settingsStore.current().sessionPolicy, SessionPolicy::selective);
  EXPECT_EQ(permissionOfANewTab(), SessionPermission::readOnly);
}

TEST_F(BridgeCoordinatorTest, AdoptsAPolicyAndKeepsTheOtherSettings) {
  settingsStore.save({.retentionDays = 30});
  coordinator.adoptSessionPolicy(SessionPolicy::selective);
  EXPECT_EQ(settingsStore.load(),
            (PrivacyRetentionSettings{.retentionDays = 30, .sessionPolicy = SessionPolicy::selective}));
  EXPECT_EQ(permissionOfANewTab(), SessionPermission::readOnly);
}

TEST_F(BridgeCoordinatorTest, AHistorySwitchedOffDuringACallDoesNotComeBack) {
  keepHistory();
  const auto id = registerTab();
  // After the command was sent, the clock is asked for its delivery, and then for the end of its record.
  int callsOfTheClock = 0;
  std::function<void()> atTheEnd;
  const Clock clock = [&] {
    if (terminal.callCount("send") == 1 && ++callsOfTheClock == 2) atTheEnd();
    return time.now();
  };
  RequestRecorder ownRecorder(clock);
  BridgeCoordinator own(terminal, registry, state, ownRecorder, settingsStore, historyStore, clock);
  atTheEnd = [&] {
    EXPECT_EQ(ownRecorder.snapshot().at(0).commandBody, "ls") << "the call has read the settings";
    own.applySettings({});
  };
  EXPECT_TRUE(own.sendCommand(request, client, {id, "ls"}).ok);
  EXPECT_FALSE(settingsStore.current().persistentHistoryEnabled);
  EXPECT_FALSE(historyExists());
}

TEST_F(BridgeCoordinatorTest, LeavesTheHistoryAsTheSettingsAsk) {
  settingsStore.save({.persistentHistoryEnabled = true, .deleteOnAppExit = false});
  const auto id = registerTab();
  coordinator.readOutput(request, client, {.sessionId = id});
  coordinator.sendKey(numberedUuid(501), client, {id, TerminalKey::tab, 1});
  EXPECT_EQ(historyStore.load().size(), 1u);
  coordinator.leaveHistory();
  EXPECT_EQ(historyStore.load().size(), 2u) << "what came after the last save is kept too";
  const auto written = std::filesystem::last_write_time(historyStore.fileURL());
  coordinator.leaveHistory();
  EXPECT_EQ(std::filesystem::last_write_time(historyStore.fileURL()), written) << "nothing is new";
  settingsStore.save({.persistentHistoryEnabled = true, .deleteOnAppExit = true});
  coordinator.leaveHistory();
  EXPECT_FALSE(historyExists());
  EXPECT_TRUE(recorder.snapshot().empty());
}

TEST_F(BridgeCoordinatorTest, LeavesAHistoryThatIsNeitherKeptNorToBeDeletedAlone) {
  settingsStore.save({.deleteOnAppExit = false});
  testing::writeFile(historyStore.fileURL(), "of an earlier run");
  coordinator.listSessions(request, client, {});
  coordinator.leaveHistory();
  EXPECT_TRUE(historyExists());
}

TEST_F(BridgeCoordinatorTest, TheTerminalGetsTheSettingsThatHold) {
  settingsStore.save({.tmuxTransport = TmuxTransportChoice::program});
  coordinator.loadLocalState();
  EXPECT_EQ(terminal.settings, settingsStore.current());
  coordinator.applySettings({.tmuxTransport = TmuxTransportChoice::automatic});
  EXPECT_EQ(terminal.settings, settingsStore.current());
}

TEST_F(BridgeCoordinatorTest, SavedSettingsCountAtTheEndAlthoughTheFirstWereUnreadable) {
  testing::writeFile(settingsStore.fileURL(), "{");
  testing::writeFile(historyStore.fileURL(), R"({"schemaVersion":1,"records":[]})");
  EXPECT_TRUE(coordinator.loadLocalState().settings);
  coordinator.leaveHistory();
  EXPECT_TRUE(historyExists()) << "nobody has asked for anything yet";
  coordinator.applySettings({.persistentHistoryEnabled = true});
  coordinator.leaveHistory();
  EXPECT_FALSE(historyExists());
}

TEST_F(BridgeCoordinatorTest, WhatTheUserSeesCountsAtTheEndAlthoughItCouldNotBeSaved) {
  const PrivacyRetentionSettings keeps{.persistentHistoryEnabled = true, .deleteOnAppExit = false};
  const PrivacyRetentionSettings deletes{.persistentHistoryEnabled = true, .deleteOnAppExit = true};
  const PrivacyRetentionSettings keepsNone{.deleteOnAppExit = false};
  const auto id = registerTab();
  const auto endsWithHistory = [&](const auto& stored, const auto& shown) {
    settingsStore.save(stored);
    coordinator.readOutput(request, client, {.sessionId = id});
    coordinator.leaveHistory(shown);
    return historyExists();
  };
  EXPECT_FALSE(endsWithHistory(keeps, deletes));
  EXPECT_TRUE(endsWithHistory(deletes, keeps));
  EXPECT_FALSE(endsWithHistory(keeps, keepsNone));
  testing::writeFile(historyStore.fileURL(), "of an earlier run");
  auto elsewise = keepsNone;
  elsewise.sessionPolicy = SessionPolicy::selective;
  EXPECT_TRUE((settingsStore.save(keepsNone), coordinator.leaveHistory(elsewise), historyExists()))
      << "nothing of the history was changed";
}

TEST_F(BridgeCoordinatorTest, TheLogHasALineForEachCallThatChangesSomething) {
  const auto id = registerTab();
  coordinator.status(request, client);
  coordinator.listSessions(request, client, {});
  coordinator.activeSession(request, client);
  coordinator.readOutput(request, client, {.sessionId = id});
  coordinator.captureScreen(request, client, {id});
  EXPECT_THAT(log.all(), ::testing::IsEmpty());
  const auto created =
      coordinator.createSession(request, {"an agent", std::nullopt}, {}).data->session.sessionId;
  coordinator.sendCommand(request, client, {id, "echo a-secret"});
  coordinator.sendKey(request, client, {id, TerminalKey::tab, 1});
  coordinator.setPaused(true);
  coordinator.focusSession(request, {"x\" 1.0: delivered\n", "2"}, {id});
  const auto session = ", session " + id.toString();
  EXPECT_THAT(log.all(),
              ::testing::ElementsAre(
                  "info calls: terminal_create_session by \"an agent\", session " + created.toString() +
                      ": delivered",
                  "info calls: terminal_send_command by \"test client\" \"1.0\"" + session + ": delivered",
                  "info calls: terminal_send_key by \"test client\" \"1.0\"" + session + ": delivered",
                  "info calls: terminal_focus_session by \"x' 1.0: delivered?\" \"2\"" + session +
                      ": rejected, MCP_PAUSED"));
}

TEST_F(BridgeCoordinatorTest, TheLogNamesWhatFailedInTheTerminalAndInAStore) {
  keepHistory();
  const auto id = registerTab();
  terminal.failWith("listSessions", PlatformError("d", -1708));
  coordinator.listSessions(request, client, {});
  EXPECT_THAT(
      log.all(),
      ::testing::ElementsAre(
          "warning calls: terminal_list_sessions failed: Terminal.app could not complete the requested automation operation."));
  terminal.failures.clear();
  std::filesystem::create_directories(historyStore.fileURL() / "a folder in its place");
  coordinator.sendCommand(request, client, {id, "ls"});
  EXPECT_EQ(log.count("delivered"), 0u);
  EXPECT_EQ(log.count(": rejected, HISTORY_STORAGE_FAILED"), 1u);
  EXPECT_EQ(log.count("warning calls: terminal_send_command failed: History could not be saved locally."),
            1u);
}

TEST_F(BridgeCoordinatorTest, WaitsFiveSecondsForTheTerminalsStatus) {
  EXPECT_EQ(coordinator.statusService().deadline(), std::chrono::seconds(5));
}

}  // namespace
}  // namespace velmora
