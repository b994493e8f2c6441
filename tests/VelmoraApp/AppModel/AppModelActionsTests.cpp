// What the user does on the screens.
#include <QtCore/QLocale>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/PersonMessages.h"
#include "LocalControl/UnixSocketClient.h"
#include "VelmoraApp/AppModel/Translation.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

using testing::countOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::numberedUuid;
using ::testing::SizeIs;
using testing::spinUntil;

class AppModelActionsTest : public testing::AppFixture {
 protected:
  /// The sentences that a signal brought.
  template <class Signal>
  std::shared_ptr<std::vector<std::string>> sentencesOf(Signal signal) {
    auto sentences = std::make_shared<std::vector<std::string>>();
    QObject::connect(app.get(), signal, app.get(), [sentences](const Problem& problem) {
      sentences->push_back(problem.text().toStdString());
    });
    return sentences;
  }
  auto unsavedSettings() {
    auto sentences = std::make_shared<std::vector<std::string>>();
    QObject::connect(app.get(), &AppModel::settingsNotSaved, app.get(), [sentences](const Problem& problem) {
      sentences->push_back(problem.text().toStdString());
    });
    return sentences;
  }
};

TEST_F(AppModelActionsTest, PausingStopsChangesAtOnceAndResumingLetsThemPass) {
  startApp();
  const auto changes = countOf(*app, &AppModel::statusChanged);
  app->setPaused(true);
  EXPECT_EQ(app->status().mcpState, MCPState::paused);
  EXPECT_EQ(*changes, 1);
  EXPECT_EQ(sendCommand("ls").error->code, ErrorCode::mcpPaused);
  app->setPaused(false);
  EXPECT_EQ(app->status().mcpState, MCPState::active);
  EXPECT_TRUE(sendCommand("ls").ok);
}

TEST_F(AppModelActionsTest, APauseHoldsWhenTheApplicationStartsAgainUntilTheUserResumes) {
  const auto kept = [this] { return std::filesystem::exists(directory / "data/Velmora/paused"); };
  startApp().setPaused(true);
  ASSERT_TRUE(spinUntil(kept));
  app.reset();
  options.bridge.makeTerminal = [](const auto&) { return std::make_unique<testing::FakeTerminal>(); };
  startApp();
  EXPECT_EQ(app->status().mcpState, MCPState::paused);
  app->setPaused(false);
  EXPECT_TRUE(spinUntil([&] { return !kept(); }));
}

TEST_F(AppModelActionsTest, ShowsAtOnceWhatTheUserChangesInATerminal) {
  startApp();
  auto connection = UnixSocketClient::connect(directory / "app.velmora.Velmora/person-v1.sock");
  const auto ask = [&](PersonVerb verb, JSONObject arguments) {
    connection.writeFrame(
        LocalControlCodec::frame(PersonRequest{.operation = verb, .arguments = std::move(arguments)}));
    EXPECT_TRUE(LocalControlCodec::decode<LocalControlResponse>(connection.readFrame()).ok);
  };
  ask(PersonVerb::pause, {});
  EXPECT_TRUE(spinUntil([this] { return app->status().mcpState == MCPState::paused; }));
  const auto id = app->sessions()[0].sessionId;
  ask(PersonVerb::permit, {{"session", id.toString()}, {"permission", "blocked"}});
  EXPECT_TRUE(spinUntil([this] { return app->sessions()[0].permission == SessionPermission::blocked; }));
  ask(PersonVerb::policy, {{"policy", "selective"}});
  EXPECT_TRUE(spinUntil([this] { return app->settings().sessionPolicy == SessionPolicy::selective; }));
}

TEST_F(AppModelActionsTest, ASnapshotUnderWayDoesNotTurnThePauseSwitchBack) {
  startApp();
  terminal->statusHangs = true;
  app->poll();
  ASSERT_TRUE(spinUntil([this] { return terminal->callCount("status") == 2; }));
  app->setPaused(true);
  terminal->statusHangs = false;
  time.advance(1);
  terminal->release();
  ASSERT_TRUE(spinUntil([this] { return app->status().updatedAt == time.now(); }));
  EXPECT_EQ(app->status().mcpState, MCPState::paused);
}

TEST_F(AppModelActionsTest, ABlockedSessionStaysListedAndRefuses) {
  startApp();
  const auto id = app->sessions()[0].sessionId;
  andRefresh([&] { app->setPermission(SessionPermission::blocked, id); });
  ASSERT_THAT(app->sessions(), SizeIs(2));
  EXPECT_EQ(app->sessions()[0].sessionId, id);
  EXPECT_EQ(app->sessions()[0].permission, SessionPermission::blocked);
  EXPECT_EQ(sendCommand("ls").error->code, ErrorCode::sessionNotAllowed);
}

TEST_F(AppModelActionsTest, ThePermissionOfAnUnknownSessionIsRefusedWithASentence) {
  startApp();
  const auto sentences = sentencesOf(&AppModel::sessionActionFailed);
  andRefresh([this] { app->setPermission(SessionPermission::allowed, numberedUuid(999)); });
  EXPECT_THAT(
      *sentences,
      ::testing::ElementsAre(
          "The requested Terminal session was not found. List sessions and select a current sessionId."));
}

TEST_F(AppModelActionsTest, FocusBringsTheTabForwardAndRefreshes) {
  startApp();
  const auto before = refreshes();
  andRefresh([this] { app->focus(app->sessions()[1].sessionId); });
  EXPECT_EQ(terminal->callCount("focus"), 1u);
  EXPECT_THAT(terminal->calls(), ::testing::Contains("focus(/dev/ttys002, 12)"));
  EXPECT_EQ(refreshes(), before + 2) << "one to validate, one to refresh";
  const auto isFocus = [](const auto& record) { return record.toolName == ToolName::focusSession; };
  EXPECT_EQ(std::count_if(app->records().begin(), app->records().end(), isFocus), 1);
}

TEST_F(AppModelActionsTest, AFocusThatFailsSaysWhy) {
  startApp();
  app->setPaused(true);
  const auto sentences = sentencesOf(&AppModel::sessionActionFailed);
  andRefresh([this] { app->focus(app->sessions()[0].sessionId); });
  EXPECT_THAT(*sentences,
              ::testing::ElementsAre(
                  "MCP change operations are paused. Resume MCP operations in Velmora, then retry."));
  EXPECT_EQ(terminal->callCount("focus"), 0u);
}

TEST_F(AppModelActionsTest, AListingThatFailsLeavesTheSessionsAndSaysWhy) {
  startApp();
  const auto sentences = sentencesOf(&AppModel::sessionActionFailed);
  terminal->failWith("listSessions", PlatformError("Velmora.Automation", platformErrorCode::scriptError));
  andRefresh([this] { app->refreshAll(); });
  EXPECT_THAT(app->sessions(), SizeIs(2));
  EXPECT_THAT(*sentences, SizeIs(1));
}

TEST_F(AppModelActionsTest, ATerminalThatRunsNoMoreHasNoSessions) {
  startApp();
  const auto sentences = sentencesOf(&AppModel::sessionActionFailed);
  terminal->failWith("listSessions", PlatformError("Velmora.Automation", platformErrorCode::notRunning));
  terminal->runtimeStatus = {};
  andRefresh([this] { app->refreshAll(); });
  EXPECT_THAT(app->sessions(), IsEmpty());
  EXPECT_EQ(app->status().terminalState, TerminalState::notRunning);
  EXPECT_THAT(*sentences, IsEmpty());
}

TEST_F(AppModelActionsTest, RefreshesAskedForMeanwhileBecomeOne) {
  startApp();
  const auto before = refreshes();
  const auto changes = countOf(*app, &AppModel::refreshingChanged);
  for (int count = 0; count < 20; ++count) app->refreshAll();
  ASSERT_TRUE(spinUntil([&] { return *changes == 4; }));
  EXPECT_EQ(refreshes(), before + 2);
}

TEST_F(AppModelActionsTest, SettingsAreShownBeforeTheyAreSavedAndInTheirRanges) {
  startApp();
  app->saveSettingsFromUI({.storeCommandBody = true, .retentionDays = 0, .maximumRecordCount = 50000});
  EXPECT_EQ(app->settings(), (PrivacyRetentionSettings{.retentionDays = 1, .maximumRecordCount = 10000}));
  EXPECT_FALSE(std::filesystem::exists(settingsFile())) << "not yet";
  ASSERT_TRUE(spinUntil([this] { return std::filesystem::exists(settingsFile()); }));
  EXPECT_THAT(testing::contentOf(settingsFile()), HasSubstr("\"retentionDays\": 1,"));
}

TEST_F(AppModelActionsTest, OfSeveralSavesTheScreensShowTheLastAllTheTime) {
  startApp();
  std::vector<std::int64_t> shown;
  QObject::connect(app.get(), &AppModel::settingsChanged, app.get(),
                   [&] { shown.push_back(app->settings().retentionDays); });
  for (const std::int64_t days : {10, 20, 30}) app->saveSettingsFromUI({.retentionDays = days});
  ASSERT_TRUE(spinUntil([this] { return app->coordinator().settingsStore().current().retentionDays == 30; }));
  andRefresh([this] { app->refreshAll(); });
  EXPECT_THAT(shown, ::testing::ElementsAre(10, 20, 30));
}

TEST_F(AppModelActionsTest, TheSessionPolicyReachesTheCoreAfterLoadingAndAfterEachChange) {
  writeSettings({.sessionPolicy = SessionPolicy::selective});
  startApp();
  EXPECT_EQ(app->sessions()[0].permission, SessionPermission::readOnly);
  app->saveSettingsFromUI({.sessionPolicy = SessionPolicy::safe});
  app->setPermission(SessionPermission::allowed, app->sessions()[1].sessionId);
  ASSERT_TRUE(spinUntil([this] { return app->sessions()[1].permission == SessionPermission::allowed; }))
      << "what was asked for later is done later";
  terminal->tabs.push_back(testing::tab("/dev/ttys003", 13, 3));
  andRefresh([this] { app->refreshAll(); });
  ASSERT_TRUE(spinUntil([this] { return app->sessions().size() == 3; }));
  EXPECT_EQ(app->sessions()[2].permission, SessionPermission::managed);
}

TEST_F(AppModelActionsTest, ThePolicyIsAdoptedBeforeTheStartAndTheOtherSettingsStay) {
  const PrivacyRetentionSettings stored{.persistentHistoryEnabled = true, .retentionDays = 30};
  writeSettings(stored);
  options.onboardingCompleted = false;
  app = std::make_unique<AppModel>(options);
  app->finishIntroduction(SessionPolicy::selective);
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(1); }));
  auto expected = stored;
  expected.sessionPolicy = SessionPolicy::selective;
  EXPECT_EQ(app->settings(), expected);
  EXPECT_EQ(app->coordinator().settingsStore().load(), expected) << "in the file too";
  for (const auto& session : app->sessions()) EXPECT_EQ(session.permission, SessionPermission::readOnly);
}

TEST_F(AppModelActionsTest, NoCommandResumesBeforeTheIntroductionIsAnswered) {
  options.onboardingCompleted = false;
  app = std::make_unique<AppModel>(options);
  auto connection = UnixSocketClient::connect(directory / "app.velmora.Velmora/person-v1.sock");
  connection.writeFrame(LocalControlCodec::frame(PersonRequest{.operation = PersonVerb::resume}));
  const auto answer = LocalControlCodec::decode<LocalControlResponse>(connection.readFrame());
  EXPECT_THAT(answer.error.value().message, HasSubstr("waits for you to choose"));
  EXPECT_EQ(app->coordinator().operationState().current(), MCPState::paused);
  app->finishIntroduction(SessionPolicy::safe);
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(1); }));
  EXPECT_EQ(app->status().mcpState, MCPState::active);
  EXPECT_FALSE(app->coordinator().pauseIsHeld());
}

TEST_F(AppModelActionsTest, APolicyThatCannotBeSavedHoldsAndIsReported) {
  std::filesystem::remove_all(directory / "data" / "Velmora");
  testing::writeFile(directory / "data" / "Velmora", "a file where the folder should be");
  options.onboardingCompleted = false;
  app = std::make_unique<AppModel>(options);
  app->finishIntroduction(SessionPolicy::selective);
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(1); }));
  EXPECT_EQ(app->sessions().at(0).permission, SessionPermission::readOnly);
  EXPECT_THAT(app->problems().last().toStdString(), HasSubstr("The session policy could not be saved. "));
}

TEST_F(AppModelActionsTest, AdoptingAPolicyLeavesUnreadableSettingsAlone) {
  testing::writeFile(settingsFile(), R"({"schemaVersion":2})");
  options.onboardingCompleted = false;
  app = std::make_unique<AppModel>(options);
  app->finishIntroduction(SessionPolicy::selective);
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(1); }));
  EXPECT_EQ(testing::contentOf(settingsFile()), R"({"schemaVersion":2})");
  EXPECT_EQ(app->sessions().at(0).permission, SessionPermission::readOnly);
  EXPECT_THAT(app->problems(), SizeIs(2)) << "not loaded, and not saved";
}

TEST_F(AppModelActionsTest, SwitchingCommandBodiesOffRewritesTheHistoryAtOnce) {
  writeSettings({.persistentHistoryEnabled = true, .storeCommandBody = true});
  startApp();
  ASSERT_TRUE(sendCommand("echo a-secret").ok);
  pollRecords();
  ASSERT_THAT(testing::contentOf(historyFile()), HasSubstr("a-secret"));
  app->saveSettingsFromUI({.persistentHistoryEnabled = true, .storeCommandBody = false});
  ASSERT_TRUE(
      spinUntil([this] { return testing::contentOf(historyFile()).find("a-secret") == std::string::npos; }));
  pollRecords();
  for (const auto& record : app->records()) EXPECT_FALSE(record.commandBody);
}

TEST_F(AppModelActionsTest, AChangeThatIsSavedIsNotCalledUnsavedWhenTheHistoryStays) {
  writeSettings({.persistentHistoryEnabled = true});
  startApp();
  std::filesystem::create_directories(historyFile() / "a folder in its place");
  const auto sentences = unsavedSettings();
  app->saveSettingsFromUI({.persistentHistoryEnabled = false});
  ASSERT_TRUE(spinUntil([&] { return sentences->size() == 1; }));
  EXPECT_THAT((*sentences)[0],
              ::testing::StartsWith("The change is saved, but what it no longer allows could not be "
                                    "removed from the history. "));
  EXPECT_FALSE(app->coordinator().settingsStore().load().persistentHistoryEnabled);
  EXPECT_FALSE(app->settings().persistentHistoryEnabled);
}

TEST_F(AppModelActionsTest, WhatCouldNotBeLoadedIsSaidInTheLanguageOfNow) {
  testing::writeFile(settingsFile(), "no settings");
  startApp();
  ASSERT_THAT(app->problems(), ::testing::SizeIs(1));
  EXPECT_TRUE(app->problems()[0].startsWith("The settings could not be loaded; the defaults hold. "));
  {
    const auto korean = Translation::installed(Language::korean);
    EXPECT_TRUE(app->problems()[0].startsWith("설정을 불러올 수 없어"));
  }
  QLocale::setDefault(QLocale::system());
}

TEST_F(AppModelActionsTest, KnownSessionsBecomeReadOnlyWhenAsked) {
  startApp();
  EXPECT_EQ(app->knownSessionsToRestrict(), 2);
  andRefresh([this] { app->makeKnownSessionsReadOnly(); });
  EXPECT_EQ(app->knownSessionsToRestrict(), 0);
  EXPECT_EQ(sendCommand("ls").error->code, ErrorCode::sessionNotAllowed);
}

TEST_F(AppModelActionsTest, AFailedSaveKeepsTheDraftUntilARefreshShowsWhatIsStored) {
  startApp();
  std::filesystem::remove_all(directory / "data" / "Velmora");
  testing::writeFile(directory / "data" / "Velmora", "a file where the folder should be");
  const auto sentences = unsavedSettings();
  app->saveSettingsFromUI({.retentionDays = 30});
  ASSERT_TRUE(spinUntil([&] { return sentences->size() == 1; }));
  EXPECT_EQ(app->settings().retentionDays, 30);
  andRefresh([this] { app->refreshAll(); });
  EXPECT_TRUE(spinUntil([this] { return app->settings().retentionDays == 7; }));
}

TEST_F(AppModelActionsTest, ClearingEmptiesTheListAndDeletesTheFile) {
  writeSettings({.persistentHistoryEnabled = true});
  startApp();
  ASSERT_TRUE(sendCommand("ls").ok);
  pollRecords();
  ASSERT_TRUE(std::filesystem::exists(historyFile()));
  app->clearHistory();
  ASSERT_TRUE(spinUntil([this] { return app->records().empty(); }));
  EXPECT_FALSE(std::filesystem::exists(historyFile()));
  EXPECT_THAT(app->coordinator().recorder().snapshot(), IsEmpty());
}

TEST_F(AppModelActionsTest, AFileThatCannotBeClearedIsReported) {
  startApp();
  std::filesystem::create_directories(historyFile() / "a folder in its place");
  const auto sentences = sentencesOf(&AppModel::historyNotCleared);
  app->clearHistory();
  ASSERT_TRUE(spinUntil([&] { return sentences->size() == 1; }));
  EXPECT_THAT((*sentences)[0], HasSubstr("History could not be deleted."));
  EXPECT_THAT(app->records(), IsEmpty());
}

}  // namespace
}  // namespace velmora
