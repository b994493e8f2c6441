// Start, poll and end of the model. What the user does is in AppModelActionsTests.cpp.
#include <QtCore/QThread>
#include <fstream>

#include "LocalControl/LocalControlClient.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::numberedUuid;
using ::testing::SizeIs;
using testing::spinUntil;

class AppModelTest : public testing::AppFixture {
 protected:
  LocalControlResponse callOverTheSocket(ToolName tool) {
    LocalControlClient client(directory / "app.velmora.Velmora/control-v1.sock");
    return client.send(
        {.requestId = numberedUuid(900), .client = {"test", std::nullopt, 1}, .operation = tool});
  }

  void keepHistory(bool deletesOnExit) {
    writeSettings(
        {.persistentHistoryEnabled = true, .storeCommandBody = true, .deleteOnAppExit = deletesOnExit});
  }
};

TEST_F(AppModelTest, StartsWithNothingToShow) {
  app = std::make_unique<AppModel>(options);
  EXPECT_EQ(app->status(), BridgeStatus{});
  EXPECT_THAT(app->sessions(), IsEmpty());
  EXPECT_THAT(app->records(), IsEmpty());
  EXPECT_EQ(app->settings(), PrivacyRetentionSettings{});
  EXPECT_FALSE(app->selectedSection());
  EXPECT_THAT(app->problems(), IsEmpty());
}

TEST_F(AppModelTest, TheEndOfTheIntroductionDoesNotLiftAPauseThatTheUserMade) {
  options.onboardingCompleted = false;
  testing::writeFile(directory / "data/Velmora/paused", "");
  app = std::make_unique<AppModel>(options);
  app->finishIntroduction(SessionPolicy::safe);
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(1); }));
  EXPECT_EQ(app->status().mcpState, MCPState::paused);
}

TEST_F(AppModelTest, OnAFirstLaunchServesButNeitherPromptsNorPollsUntilItIsStarted) {
  options.onboardingCompleted = false;
  options.pollInterval = std::chrono::milliseconds(1);
  app = std::make_unique<AppModel>(options);
  const auto listed = callOverTheSocket(ToolName::listSessions);
  ASSERT_TRUE(listed.ok);
  for (const auto& session : *listed.data->find("sessions")->array())
    EXPECT_EQ(*session.find("permission")->string(), "readOnly");
  app->setPaused(false);
  EXPECT_EQ(app->status().mcpState, MCPState::paused) << "nobody has said yet what agents may do";
  QCoreApplication::processEvents();
  EXPECT_THAT(prompts, IsEmpty());
  EXPECT_THAT(terminal->calls(), ElementsAre("listSessions"));
  EXPECT_THAT(app->records(), IsEmpty());
  EXPECT_FALSE(app->isStarted());
  app->finishIntroduction(SessionPolicy::safe);
  ASSERT_TRUE(spinUntil([this] { return terminal->callCount("status") > 3; }));
  EXPECT_THAT(prompts, SizeIs(4));
}

TEST_F(AppModelTest, PromptsOnceInOrderAndThenRefreshes) {
  std::vector<QThread*> threads;
  options.permissionPrompter.requestAccessibility = [&] {
    prompts.push_back("accessibility");
    threads.push_back(QThread::currentThread());
    return false;
  };
  options.permissionPrompter.requestTerminalAutomation = [&](TerminalAutomating& given) {
    prompts.push_back("terminal");
    threads.push_back(QThread::currentThread());
    EXPECT_EQ(&given, terminal);
    EXPECT_THAT(terminal->calls(), IsEmpty()) << "the prompts come first";
  };
  startApp();
  EXPECT_THAT(prompts, ElementsAre("accessibility", "screen capture", "terminal", "events"));
  EXPECT_EQ(threads.at(0), QCoreApplication::instance()->thread());
  EXPECT_NE(threads.at(1), threads.at(0));
  EXPECT_THAT(app->sessions(), SizeIs(2));
  EXPECT_EQ(app->status().sessionCount, 2);

  app->start();
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(2); }));
  EXPECT_THAT(prompts, SizeIs(4)) << "a second start does not ask again";
}

TEST_F(AppModelTest, GoesOnWhenAPromptFails) {
  options.permissionPrompter.requestTerminalAutomation = [](TerminalAutomating&) {
    throw PlatformError("Velmora.Automation", platformErrorCode::notPermitted);
  };
  startApp();
  EXPECT_THAT(prompts, ElementsAre("accessibility", "screen capture", "events"));
}

TEST_F(AppModelTest, GoesOnWhateverAPromptThrows) {
  options.permissionPrompter.requestScreenCapture = []() -> bool { throw 5; };
  options.permissionPrompter.requestSystemEventsAutomation = [](TerminalAutomating&) {
    throw "no exception";
  };
  startApp();
  EXPECT_THAT(prompts, ElementsAre("accessibility", "terminal"));
}

TEST_F(AppModelTest, RefreshesThroughTheCoordinatorAsAClientOfItsOwn) {
  startApp();
  ASSERT_THAT(app->records(), SizeIs(2));
  EXPECT_EQ(app->records()[0].toolName, ToolName::listSessions);
  EXPECT_EQ(app->records()[1].toolName, ToolName::status);
  for (const auto& record : app->records())
    EXPECT_EQ(record.client, (ClientIdentitySummary{"Velmora.app", {}}));
}

TEST_F(AppModelTest, PublishesTheStoredSettingsAndHistory) {
  keepHistory(/*deletesOnExit=*/false);
  startApp();
  EXPECT_TRUE(sendCommand("ls").ok);
  app->prepareForTermination();
  const auto records = app->coordinator().recorder().snapshot();
  app.reset();

  auto again =
      std::make_shared<std::unique_ptr<testing::FakeTerminal>>(std::make_unique<testing::FakeTerminal>());
  terminal = again->get();
  options.bridge.makeTerminal = [again](const auto&) { return std::move(*again); };
  startApp();
  EXPECT_TRUE(app->settings().storeCommandBody);
  ASSERT_GE(app->records().size(), records.size());
  EXPECT_EQ(app->records()[2].commandBody, "ls");
}

TEST_F(AppModelTest, StartsWithDefaultsAndSaysSoWhenTheSettingsAreUnreadable) {
  testing::writeFile(settingsFile(), "{");
  startApp();
  EXPECT_EQ(app->settings(), PrivacyRetentionSettings{});
  ASSERT_THAT(app->problems(), SizeIs(1));
  EXPECT_TRUE(app->problems()[0].startsWith("The settings could not be loaded; the defaults hold."));
}

TEST_F(AppModelTest, StartsWithNoHistoryAndSaysSoWhenItIsUnreadable) {
  keepHistory(/*deletesOnExit=*/false);
  testing::writeFile(historyFile(), "no history");
  startApp();
  EXPECT_THAT(app->records(), SizeIs(2)) << "only those of its own refresh";
  ASSERT_THAT(app->problems(), SizeIs(1));
  EXPECT_TRUE(app->problems()[0].startsWith("The history could not be loaded."));
}

TEST_F(AppModelTest, APollShowsNewRecordsAndStatusButNoNewSessions) {
  startApp();
  const auto listings = terminal->callCount("listSessions");
  terminal->runtimeStatus.windowCount = 7;
  app->coordinator().readOutput(numberedUuid(901), {"a client", {}}, {numberedUuid(902)});
  const auto unknown = terminal->callCount("listSessions") - listings;
  pollRecords();
  ASSERT_TRUE(spinUntil([this] { return app->status().windowCount == 7; }));
  EXPECT_EQ(app->records().back().requestId, numberedUuid(901));
  ASSERT_TRUE(app->status().lastError);
  EXPECT_EQ(app->status().lastError->code, ErrorCode::sessionNotFound);
  EXPECT_EQ(terminal->callCount("listSessions"), listings + unknown) << "a poll lists no sessions";
}

TEST_F(AppModelTest, APollThatFindsNothingNewSignalsNothing) {
  startApp();
  // The first poll brings the refresh's own request as the last one.
  app->poll();
  ASSERT_TRUE(spinUntil([this] { return app->status().lastRequestId.has_value(); }));
  pollRecords();
  const auto queries = terminal->callCount("status");
  const auto statusChanges = testing::countOf(*app, &AppModel::statusChanged);
  const auto recordChanges = testing::countOf(*app, &AppModel::recordsChanged);
  const auto before = app->status().updatedAt;
  time.advance(1);
  app->poll();
  ASSERT_TRUE(spinUntil([&] { return terminal->callCount("status") > queries; }));
  ASSERT_TRUE(spinUntil([&] { return app->status().updatedAt > before; }));
  EXPECT_EQ(*statusChanges, 0);
  EXPECT_EQ(*recordChanges, 0);
}

TEST_F(AppModelTest, PollsByItselfUntilTheEnd) {
  options.pollInterval = std::chrono::milliseconds(1);
  startApp();
  ASSERT_TRUE(spinUntil([this] { return terminal->callCount("status") > 5; }));
  app->prepareForTermination();
  QCoreApplication::processEvents();
  const auto queries = terminal->callCount("status");
  app->poll();
  EXPECT_TRUE(spinUntil([&] { return terminal->callCount("status") == queries + 1; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(terminal->callCount("status"), queries + 1) << "only the poll that was asked for";
}

TEST_F(AppModelTest, AHungTerminalHoldsUpNothingElse) {
  startApp();
  terminal->statusHangs = true;
  app->refreshAll();
  ASSERT_TRUE(spinUntil([this] { return terminal->callCount("status") > 1; }));

  // While the terminal hangs the user pauses, blocks a session and sees what clients asked for.
  app->setPaused(true);
  EXPECT_EQ(app->status().mcpState, MCPState::paused);
  EXPECT_EQ(sendCommand("ls").error->code, ErrorCode::mcpPaused);
  app->setPermission(SessionPermission::blocked, app->sessions()[0].sessionId);
  EXPECT_TRUE(spinUntil([this] { return app->sessions()[0].permission == SessionPermission::blocked; }));
  app->saveSettingsFromUI({.retentionDays = 3});
  EXPECT_TRUE(spinUntil([this] { return app->coordinator().settingsStore().current().retentionDays == 3; }));
  pollRecords();
  EXPECT_EQ(app->records().back().toolName, ToolName::sendCommand);
  for (int count = 0; count < 50; ++count) app->poll();
  EXPECT_TRUE(app->isRefreshing());
  EXPECT_EQ(terminal->callCount("status"), 2u) << "polls do not pile up";

  terminal->statusHangs = false;
  terminal->release();
  EXPECT_TRUE(spinUntil([this] { return !app->isRefreshing(); }));
  EXPECT_EQ(app->status().mcpState, MCPState::paused);
}

TEST_F(AppModelTest, EndsThoughTheTerminalHangs) {
  startApp();
  terminal->statusHangs = true;
  app->poll();
  ASSERT_TRUE(spinUntil([this] { return terminal->callCount("status") > 1; }));
  app->prepareForTermination();
  app.reset();
}

TEST_F(AppModelTest, DeletesTheHistoryAtTheEndOnlyWhenAsked) {
  for (const bool deletes : {true, false}) {
    keepHistory(deletes);
    auto fake =
        std::make_shared<std::unique_ptr<testing::FakeTerminal>>(std::make_unique<testing::FakeTerminal>());
    terminal = fake->get();
    terminal->tabs = {testing::tab("/dev/ttys001", 11)};
    options.bridge.makeTerminal = [fake](const auto&) { return std::move(*fake); };
    startApp();
    ASSERT_TRUE(sendCommand("ls").ok);
    ASSERT_TRUE(std::filesystem::exists(historyFile()));
    pollRecords();
    app->prepareForTermination();
    EXPECT_EQ(std::filesystem::exists(historyFile()), !deletes);
    EXPECT_EQ(app->records().empty(), deletes);
    app->prepareForTermination();  // the second time there is nothing left to do
    app.reset();
  }
}

TEST_F(AppModelTest, WhatIsShownCountsAtTheEndAlthoughItCouldNotBeSaved) {
  keepHistory(/*deletesOnExit=*/false);
  startApp();
  ASSERT_TRUE(sendCommand("ls").ok);
  ASSERT_TRUE(std::filesystem::exists(historyFile()));
  std::filesystem::remove(settingsFile());
  std::filesystem::create_directories(settingsFile() / "a folder in its place");
  auto settings = app->settings();
  settings.deleteOnAppExit = true;
  app->saveSettingsFromUI(settings);
  app->prepareForTermination();
  EXPECT_FALSE(std::filesystem::exists(historyFile()));
}

TEST_F(AppModelTest, WhatWasSavedLastIsOnDiskAtTheEnd) {
  startApp();
  app->saveSettingsFromUI({.retentionDays = 30});
  app->prepareForTermination();
  EXPECT_THAT(testing::contentOf(settingsFile()), HasSubstr("\"retentionDays\": 30"));
}

TEST_F(AppModelTest, AtTheEndTheShownSettingsHoldThoughTheyCouldNotBeSaved) {
  keepHistory(/*deletesOnExit=*/true);
  startApp();
  ASSERT_TRUE(sendCommand("ls").ok);
  std::filesystem::remove(settingsFile());
  std::filesystem::create_directories(settingsFile() / "a folder in its place");
  const auto failures = testing::countOf(*app, &AppModel::settingsNotSaved);
  auto kept = app->settings();
  kept.deleteOnAppExit = false;
  app->saveSettingsFromUI(kept);
  ASSERT_TRUE(spinUntil([&] { return *failures == 1; }));
  app->prepareForTermination();
  EXPECT_TRUE(std::filesystem::exists(historyFile()));
}

TEST_F(AppModelTest, ReportsAProblemOnce) {
  app = std::make_unique<AppModel>(options);
  for (int count = 0; count < 2; ++count) app->addProblem({.what = "The disk is full."});
  EXPECT_EQ(app->problems(), QStringList{"The disk is full."});
}

TEST_F(AppModelTest, TellsOfAChangedSectionOnce) {
  app = std::make_unique<AppModel>(options);
  const auto changes = testing::countOf(*app, &AppModel::selectedSectionChanged);
  app->selectSection(AppSection::history);
  app->selectSection(AppSection::history);
  EXPECT_EQ(app->selectedSection(), AppSection::history);
  EXPECT_EQ(*changes, 1);
}

}  // namespace
}  // namespace velmora
