#include "VelmoraApp/AppModel/ClientActivity.h"
#include "VelmoraApp/Dashboard/DashboardViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/ModelRows.h"
#include "tests/support/LocalTimeZone.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::spinUntil;
using testing::texts;

class DashboardViewModelTest : public testing::AppFixture {
 protected:
  void start() {
    startApp();
    names = std::make_unique<SessionTitles>(*app);
    dashboard = std::make_unique<DashboardViewModel>(*app, *names, terminalOfTheTexts);
  }
  ~DashboardViewModelTest() override {
    dashboard.reset();
    names.reset();
  }

  GuidedTerminal terminalOfTheTexts = GuidedTerminal::tmux;
  std::unique_ptr<SessionTitles> names;
  std::unique_ptr<DashboardViewModel> dashboard;
};

TEST_F(DashboardViewModelTest, ShowsTheStatus) {
  const LocalTimeZone zone("UTC");
  start();
  EXPECT_EQ(dashboard->bridgeState(), "Active");
  EXPECT_EQ(dashboard->terminalName(), "Fake");
  EXPECT_EQ(dashboard->terminalState(), "available");
  EXPECT_EQ(dashboard->terminalMeaning(), Meaning::Positive);
  EXPECT_EQ(dashboard->automation(), "granted");
  EXPECT_EQ(dashboard->automationMeaning(), Meaning::Plain);
  EXPECT_EQ(dashboard->windowCount(), 1);
  EXPECT_EQ(dashboard->sessionCount(), 2);
  EXPECT_EQ(dashboard->lastRequest().toStdString(), time.now().toIso8601().substr(11, 8));
  EXPECT_EQ(dashboard->recentError(), "");
  EXPECT_EQ(dashboard->bridgeCaption(), "Agents may use your sessions.");
  EXPECT_EQ(dashboard->terminalCaption(), "Fake is running.");
  EXPECT_EQ(dashboard->automationCaption(), "Velmora may use Fake.");
  EXPECT_EQ(dashboard->sessionsCaption(), "Agents may type into all of them.");
  EXPECT_EQ(dashboard->clients()->rowCount(), 0);
  EXPECT_THAT(texts(dashboard->warnings()), IsEmpty());
}

TEST_F(DashboardViewModelTest, ShowsNothingOfRequestsBeforeThereIsOne) {
  options.onboardingCompleted = false;
  app = std::make_unique<AppModel>(options);
  const SessionTitles none(*app);
  const DashboardViewModel fresh(*app, none, GuidedTerminal::tmux);
  EXPECT_EQ(fresh.lastRequest(), "");
  EXPECT_EQ(fresh.terminalState(), "notRunning");
  EXPECT_EQ(fresh.terminalCaption(), "Fake is not running.");
  EXPECT_EQ(fresh.automation(), "unknown");
  EXPECT_EQ(fresh.automationCaption(), "Not known yet.");
  EXPECT_EQ(fresh.sessionsCaption(), "None was found.");
}

TEST_F(DashboardViewModelTest, PausesAndResumes) {
  start();
  const auto changes = testing::countOf(*dashboard, &DashboardViewModel::statusChanged);
  EXPECT_EQ(dashboard->pauseButtonText(), "Pause MCP changes");
  dashboard->togglePause();
  EXPECT_GE(*changes, 1);
  EXPECT_TRUE(dashboard->paused());
  EXPECT_EQ(dashboard->bridgeState(), "Paused");
  EXPECT_EQ(dashboard->bridgeMeaning(), Meaning::Caution);
  EXPECT_EQ(dashboard->pauseButtonText(), "Resume MCP changes");
  EXPECT_EQ(sendCommand("ls").error->code, ErrorCode::mcpPaused);
  dashboard->togglePause();
  EXPECT_EQ(dashboard->bridgeState(), "Active");
  EXPECT_TRUE(sendCommand("ls").ok);
}

TEST_F(DashboardViewModelTest, RefreshListsAndSaysThatItIsUnderWay) {
  start();
  EXPECT_FALSE(dashboard->isLoading());
  andRefresh([this] {
    dashboard->refresh();
    EXPECT_TRUE(dashboard->isLoading());
  });
  EXPECT_EQ(refreshes(), 2u);
}

TEST_F(DashboardViewModelTest, ShowsTheLastErrorUntilARequestForTheStatusSucceeds) {
  start();
  app->setPaused(true);
  sendCommand("ls");
  app->poll();
  ASSERT_TRUE(spinUntil([this] { return !dashboard->recentError().isEmpty(); }));
  EXPECT_EQ(dashboard->recentError(), "MCP change operations are paused.");
  EXPECT_EQ(dashboard->recentErrorSuggestion(), "Resume MCP operations in Velmora, then retry.");
  andRefresh([this] { dashboard->refresh(); });
  EXPECT_TRUE(spinUntil([this] { return dashboard->recentError().isEmpty(); }));
}

TEST_F(DashboardViewModelTest, NamesTheClientsThatCalledLately) {
  start();
  EXPECT_TRUE(sendCommand("ls").ok);
  pollRecords();
  EXPECT_THAT(testing::column(*dashboard->clients(), "name"), ElementsAre("a client 2.0"));
  ASSERT_EQ(dashboard->status().connectedClients.size(), 1u);
  EXPECT_EQ(dashboard->status().connectedClients[0].name, "a client");
}

TEST_F(DashboardViewModelTest, AClientThatStoppedCallingGoesByItself) {
  start();
  EXPECT_TRUE(sendCommand("ls").ok);
  pollRecords();
  time.advance(connectedForSeconds + 1);
  app->poll();
  ASSERT_TRUE(spinUntil([this] { return dashboard->clients()->rowCount() == 0; }));
  EXPECT_THAT(dashboard->status().connectedClients, IsEmpty());
}

TEST_F(DashboardViewModelTest, WhatAgentsAreToldDoesNotNameTheOthers) {
  start();
  EXPECT_TRUE(sendCommand("ls").ok);
  pollRecords();
  const auto told = app->coordinator().status(options.bridge.uuid(), {"other", {}});
  EXPECT_THAT(told.data->status.connectedClients, IsEmpty());
}

TEST_F(DashboardViewModelTest, SaysHowManySessionsMayBeTypedInto) {
  start();
  app->coordinator().setPermission(SessionPermission::readOnly, app->sessions().at(0).sessionId);
  app->poll();
  ASSERT_TRUE(
      spinUntil([this] { return dashboard->sessionsCaption() == "Agents may type into 1 of them."; }));
  app->coordinator().setPermission(SessionPermission::blocked, app->sessions().at(1).sessionId);
  app->poll();
  ASSERT_TRUE(spinUntil([this] { return dashboard->sessionsCaption() == "Agents may type into none."; }));
}

TEST_F(DashboardViewModelTest, WarnsOfAutomationThatIsDeniedInTheAdaptersWords) {
  terminal->failWith("status", StructuredError{.code = ErrorCode::automationPermissionDenied,
                                               .message = "The socket belongs to somebody else.",
                                               .recoverySuggestion = "Ask them."});
  start();
  EXPECT_EQ(dashboard->automation(), "denied");
  EXPECT_EQ(dashboard->automationMeaning(), Meaning::Danger);
  EXPECT_EQ(dashboard->terminalState(), "unavailable");
  EXPECT_EQ(dashboard->terminalMeaning(), Meaning::Caution);
  EXPECT_THAT(
      texts(dashboard->warnings()),
      ElementsAre("Terminal automation permission is required. The socket belongs to somebody else. Ask "
                  "them."));
}

TEST_F(DashboardViewModelTest, ForTerminalAppTheWarningNamesThePane) {
  terminalOfTheTexts = GuidedTerminal::terminalApp;
  terminal->failWith("status", StructuredError{.code = ErrorCode::automationPermissionDenied,
                                               .message = "Not allowed.",
                                               .recoverySuggestion = "Allow it."});
  start();
  EXPECT_THAT(
      texts(dashboard->warnings()),
      ElementsAre(
          "Terminal automation permission is required. Open System Settings > Privacy & Security > Automation and allow Velmora."));
}

TEST_F(DashboardViewModelTest, WarnsOfWhatDidNotWorkAtTheStart) {
  testing::writeFile(settingsFile(), "{");
  testing::writeFile(directory / "app.velmora.Velmora/control-v1.sock", "a regular file");
  start();
  EXPECT_THAT(texts(dashboard->warnings()),
              ElementsAre(::testing::StartsWith("The settings could not be loaded")));
}

TEST_F(DashboardViewModelTest, OffersARestartWhileNothingIsServed) {
  const auto socket = directory / "app.velmora.Velmora/control-v1.sock";
  testing::writeFile(socket, "a regular file");
  start();
  EXPECT_TRUE(dashboard->servingProblem().startsWith("MCP clients cannot connect."));
  EXPECT_EQ(dashboard->bridgeMeaning(), Meaning::Caution);
  std::filesystem::remove(socket);
  const auto changes = testing::countOf(*dashboard, &DashboardViewModel::servingChanged);
  dashboard->restartBridge();
  EXPECT_TRUE(dashboard->isRestarting());
  ASSERT_TRUE(testing::spinUntil([this] { return !dashboard->isRestarting(); }));
  EXPECT_EQ(dashboard->servingProblem(), "");
  EXPECT_EQ(dashboard->bridgeMeaning(), Meaning::Positive);
  EXPECT_EQ(*changes, 2);
}

}  // namespace
}  // namespace velmora
