#include "VelmoraApp/Dashboard/NowViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/support/LocalTimeZone.h"

namespace velmora {
namespace {

using testing::numberedUuid;

class NowViewModelTest : public testing::AppFixture {
 protected:
  void start() {
    startApp();
    names = std::make_unique<SessionTitles>(*app);
    now = std::make_unique<NowViewModel>(*app, *names);
  }
  ~NowViewModelTest() override {
    now.reset();
    names.reset();
  }

  /// A request to the first session, `secondsAgo`.
  MCPRequestRecord request(double secondsAgo, ToolName tool, RequestStatus status) {
    MCPRequestRecord record{.requestId = numberedUuid(static_cast<std::uint64_t>(secondsAgo)),
                            .receivedAt = {time.now().secondsSinceReferenceDate - secondsAgo},
                            .client = {"agent", "1.0"},
                            .toolName = tool,
                            .status = status};
    record.sessionSnapshot = SessionReference{.sessionId = app->sessions().at(0).sessionId};
    if (status != RequestStatus::processing) record.completedAt = record.receivedAt;
    return record;
  }
  void replace(std::vector<MCPRequestRecord> records) {
    app->coordinator().recorder().replace(std::move(records));
    pollRecords();
  }
  std::string title() { return now->title().toStdString(); }
  std::string last() { return now->last().toStdString(); }

  const LocalTimeZone zone{"UTC"};
  std::unique_ptr<SessionTitles> names;
  std::unique_ptr<NowViewModel> now;
};

TEST_F(NowViewModelTest, TheScreensOwnRequestsAreNoAgents) {
  start();
  EXPECT_EQ(title(), "No agent is at work");
  EXPECT_EQ(last(), "no agent has called yet");
  EXPECT_EQ(now->detail(), "");
  EXPECT_FALSE(now->isActive());
  EXPECT_EQ(now->meaning(), Meaning::Quiet);
}

TEST_F(NowViewModelTest, SaysWhoIsDoingWhatInWhichSession) {
  start();
  replace({request(30, ToolName::readOutput, RequestStatus::readComplete),
           request(2, ToolName::sendCommand, RequestStatus::processing)});
  EXPECT_EQ(title(), "agent is sending a command to title of /dev/ttys001 (/dev/ttys001)");
  EXPECT_EQ(now->detail(), "since 06:13:18");
  EXPECT_EQ(last(), "agent read title of /dev/ttys001 (/dev/ttys001), 06:12:50");
  EXPECT_TRUE(now->isActive());
  EXPECT_EQ(now->meaning(), Meaning::Positive);
}

TEST_F(NowViewModelTest, OfSeveralItShowsTheNewestAndCountsTheOthers) {
  start();
  replace({request(9, ToolName::readOutput, RequestStatus::processing),
           request(2, ToolName::createSession, RequestStatus::processing)});
  EXPECT_EQ(title(), "agent is opening a window");
  EXPECT_TRUE(now->detail().endsWith(", and 1 more request"));
  EXPECT_EQ(last(), "");
}

TEST_F(NowViewModelTest, SaysWhyTheLastRequestCameToNothing) {
  start();
  auto refused = request(5, ToolName::sendKey, RequestStatus::rejected);
  refused.error = StructuredError{.message = "The Terminal session is busy."};
  replace({refused});
  EXPECT_TRUE(now->last().startsWith("agent tried to press a key in "));
  EXPECT_EQ(now->lastProblem(), "The Terminal session is busy.");
  EXPECT_EQ(now->lastMeaning(), Meaning::Caution);
}

TEST_F(NowViewModelTest, ShowsTheCommandWhenItIsKept) {
  start();
  auto sent = request(5, ToolName::sendCommand, RequestStatus::delivered);
  sent.commandSummary = "make";
  replace({sent});
  EXPECT_EQ(now->lastCommand(), "make");
  EXPECT_EQ(now->lastProblem(), "");
}

TEST_F(NowViewModelTest, SaysThatChangesArePaused) {
  start();
  app->setPaused(true);
  EXPECT_EQ(title(), "Changes are paused");
  EXPECT_EQ(now->detail(), "Agents may read, but change nothing.");
  EXPECT_EQ(now->meaning(), Meaning::Caution);
}

TEST_F(NowViewModelTest, NamesAWindowThatAnAgentHasJustOpened) {
  start();
  const auto created = app->coordinator().createSession(options.bridge.uuid(), {"agent", {}}, {});
  ASSERT_TRUE(created.ok);
  terminal->tabs.push_back(terminal->created);
  app->coordinator().sendCommand(options.bridge.uuid(), {"agent", {}},
                                 {created.data->session.sessionId, "ls"});
  pollRecords();
  EXPECT_TRUE(now->last().startsWith(
      QString::fromStdString("agent sent a command to " + created.data->session.title)))
      << last();
}

TEST_F(NowViewModelTest, ASessionThatClosedKeepsItsName) {
  start();
  const auto closing = app->sessions().at(0).sessionId;
  ASSERT_TRUE(sendCommand("exit").ok);
  terminal->tabs.erase(terminal->tabs.begin());
  app->coordinator().listSessions(options.bridge.uuid(), {"agent", {}}, {});
  auto sent = request(1, ToolName::sendCommand, RequestStatus::delivered);
  sent.sessionSnapshot = SessionReference{.sessionId = closing};
  replace({sent});
  EXPECT_TRUE(now->last().startsWith("agent sent a command to title of /dev/ttys001")) << last();
}

}  // namespace
}  // namespace velmora
