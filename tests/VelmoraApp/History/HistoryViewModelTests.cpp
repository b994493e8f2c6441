#include <QtCore/QLocale>
#include <QtTest/QAbstractItemModelTester>

#include "VelmoraApp/AppModel/Translation.h"
#include "VelmoraApp/History/HistoryViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/ModelRows.h"

namespace velmora {
namespace {

using testing::column;
using testing::countOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::numberedUuid;
using testing::spinUntil;
using testing::texts;

class HistoryViewModelTest : public testing::AppFixture {
 protected:
  void start() {
    startApp();
    names = std::make_unique<SessionTitles>(*app);
    history = std::make_unique<HistoryViewModel>(*app, *names);
    tester = std::make_unique<QAbstractItemModelTester>(
        history->records(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  }
  ~HistoryViewModelTest() override {
    tester.reset();
    history.reset();
    names.reset();
  }

  static MCPRequestRecord record(std::uint64_t number, ToolName tool, RequestStatus status,
                                 const std::string& client) {
    return {.requestId = numberedUuid(number),
            .receivedAt = {static_cast<double>(number)},
            .client = {client, {}},
            .toolName = tool,
            .status = status};
  }
  void replace(std::vector<MCPRequestRecord> records) {
    app->coordinator().recorder().replace(std::move(records));
    pollRecords();
  }
  void replaceWithThree() {
    replace({record(1, ToolName::status, RequestStatus::readComplete, "first"),
             record(2, ToolName::sendCommand, RequestStatus::delivered, "second"),
             record(3, ToolName::sendCommand, RequestStatus::rejected, "third")});
  }
  std::vector<std::string> clients() { return column(*history->records(), "client"); }

  std::unique_ptr<SessionTitles> names;
  std::unique_ptr<HistoryViewModel> history;
  std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(HistoryViewModelTest, OffersEveryToolAndStatus) {
  start();
  EXPECT_THAT(
      texts(history->toolLabels()),
      ElementsAre("All tools", "terminal_status", "terminal_list_sessions", "terminal_get_active_session",
                  "terminal_create_session", "terminal_send_command", "terminal_send_key",
                  "terminal_read_output", "terminal_capture_screen", "terminal_focus_session"));
  EXPECT_THAT(texts(history->statusLabels()),
              ElementsAre("All statuses", "received", "processing", "delivered", "readComplete", "rejected",
                          "failed", "cancelled"));
}

TEST_F(HistoryViewModelTest, ShowsEverythingNewestFirst) {
  start();
  replaceWithThree();
  EXPECT_THAT(clients(), ElementsAre("third", "second", "first"));
  EXPECT_EQ(history->count(), 3);
  EXPECT_EQ(history->totalCount(), 3);
}

TEST_F(HistoryViewModelTest, FiltersByToolStatusAndSearchTogether) {
  start();
  replaceWithThree();
  history->setTool("terminal_send_command");
  EXPECT_THAT(clients(), ElementsAre("third", "second"));
  EXPECT_EQ(history->toolIndex(), 5);
  history->setStatus("rejected");
  EXPECT_THAT(clients(), ElementsAre("third"));
  EXPECT_EQ(history->statusIndex(), 5);
  history->setQuery("SECOND");
  EXPECT_THAT(clients(), IsEmpty());
  EXPECT_EQ(history->totalCount(), 3);
  history->setStatusIndex(0);
  EXPECT_EQ(history->status(), "");
  EXPECT_THAT(clients(), ElementsAre("second"));
  history->setToolIndex(1);
  EXPECT_EQ(history->tool(), "terminal_status");
  history->setQuery("");
  EXPECT_THAT(clients(), ElementsAre("first"));
}

TEST_F(HistoryViewModelTest, WhatIsNoToolOrStatusStandsForAll) {
  start();
  replaceWithThree();
  history->setTool("terminal_status");
  history->setTool("no such tool");
  EXPECT_EQ(history->toolIndex(), 0);
  history->setStatusIndex(99);
  EXPECT_EQ(history->status(), "");
  history->setToolIndex(-1);
  EXPECT_THAT(clients(), ElementsAre("third", "second", "first"));
}

TEST_F(HistoryViewModelTest, AFilterHoldsForWhatArrivesLater) {
  start();
  history->setTool("terminal_send_command");
  EXPECT_TRUE(sendCommand("ls").ok);
  pollRecords();
  EXPECT_THAT(clients(), ElementsAre("a client 2.0"));
}

TEST_F(HistoryViewModelTest, TellsOfAFilterOnlyWhenItChanges) {
  start();
  const auto changes = countOf(*history, &HistoryViewModel::filterChanged);
  history->setQuery("");
  history->setTool("");
  history->setStatusIndex(0);
  EXPECT_EQ(*changes, 0);
  history->setQuery("x");
  EXPECT_EQ(*changes, 1);
}

TEST_F(HistoryViewModelTest, TheSearchFindsTheTitlesThatItShows) {
  start();
  EXPECT_TRUE(sendCommand("ls").ok);
  pollRecords();
  EXPECT_THAT(column(*history->records(), "target"), ElementsAre("title of /dev/ttys001 (/dev/ttys001)"));
  history->setQuery("TITLE of /dev/ttys001");
  EXPECT_EQ(history->count(), 1);
  history->setQuery("title of /dev/ttys002");
  EXPECT_EQ(history->count(), 0);
}

TEST_F(HistoryViewModelTest, TheSearchFindsTheErrorsThatItShowsInTheirLanguage) {
  start();
  auto refused = record(4, ToolName::sendCommand, RequestStatus::rejected, "fourth");
  refused.error = StructuredError{.code = ErrorCode::sessionBusy, .message = "The Terminal session is busy."};
  replace({record(3, ToolName::sendCommand, RequestStatus::delivered, "third"), refused});
  history->setQuery("session is BUSY");
  EXPECT_THAT(clients(), ElementsAre("fourth"));
  history->setTool("terminal_status");
  EXPECT_THAT(clients(), IsEmpty());
  history->setTool("");
  {
    const auto korean = Translation::installed(Language::korean);
    history->retranslate();
    EXPECT_THAT(clients(), IsEmpty());
    history->setQuery("세션이 사용 중");
    EXPECT_THAT(clients(), ElementsAre("fourth"));
  }
  QLocale::setDefault(QLocale::system());
}

TEST_F(HistoryViewModelTest, TheScreensOwnRequestsAreListedOnlyWhenAskedFor) {
  start();
  EXPECT_EQ(history->count(), 0);
  EXPECT_EQ(history->totalCount(), 0);
  history->setIncludeOwn(true);
  EXPECT_THAT(column(*history->records(), "toolName"),
              ElementsAre("terminal_status", "terminal_list_sessions"));
  EXPECT_EQ(history->totalCount(), 2);
  history->setIncludeOwn(false);
  EXPECT_EQ(history->count(), 0);
}

TEST_F(HistoryViewModelTest, SaysWhatTheSettingsLeaveOut) {
  start();
  const auto changes = countOf(*history, &HistoryViewModel::settingsChanged);
  EXPECT_EQ(history->notKept(), "Your settings keep neither the text of commands nor output.");
  auto settings = app->settings();
  settings.persistentHistoryEnabled = true;
  settings.storeCommandBody = true;
  app->saveSettingsFromUI(settings);
  EXPECT_EQ(*changes, 1);
  EXPECT_EQ(history->notKept(), "Your settings keep no output.");
  settings.storeOutputPreview = true;
  app->saveSettingsFromUI(settings);
  EXPECT_EQ(history->notKept(), "");
  settings.storeCommandBody = false;
  app->saveSettingsFromUI(settings);
  EXPECT_EQ(history->notKept(), "Your settings keep no text of commands.");
}

TEST_F(HistoryViewModelTest, ClearsOnlyWhatThePersonConfirmed) {
  start();
  replaceWithThree();
  const auto changes = countOf(*history->clearing(), &HistoryClearing::confirmClearChanged);
  history->clearing()->confirm();  // nobody was asked
  history->clearing()->request();
  EXPECT_TRUE(history->clearing()->confirmClear());
  history->clearing()->cancel();
  EXPECT_FALSE(history->clearing()->confirmClear());
  pollRecords();
  EXPECT_EQ(history->count(), 3);
  history->clearing()->request();
  history->clearing()->confirm();
  EXPECT_FALSE(history->clearing()->confirmClear());
  EXPECT_EQ(*changes, 4);
  EXPECT_TRUE(spinUntil([this] { return history->count() == 0; }));
  EXPECT_EQ(history->clearing()->problem(), "");
}

TEST_F(HistoryViewModelTest, AnEmptyHistoryStillAsksBeforeItClears) {
  start();
  replace({});
  EXPECT_EQ(history->count(), 0);
  history->clearing()->request();
  EXPECT_TRUE(history->clearing()->confirmClear());
}

TEST_F(HistoryViewModelTest, SaysWhyTheFileCouldNotBeDeleted) {
  start();
  std::filesystem::create_directories(historyFile() / "a folder in its place");
  history->clearing()->request();
  history->clearing()->confirm();
  ASSERT_TRUE(spinUntil([this] { return !history->clearing()->problem().isEmpty(); }));
  EXPECT_TRUE(history->clearing()->problem().startsWith("History could not be deleted."));
  {
    const auto korean = Translation::installed(Language::korean);
    EXPECT_TRUE(history->clearing()->problem().startsWith("기록을 삭제"));
  }
  QLocale::setDefault(QLocale::system());
  history->clearing()->dismissProblem();
  EXPECT_EQ(history->clearing()->problem(), "");
}

TEST_F(HistoryViewModelTest, ListsNothingNewWhileNobodySeesIt) {
  start();
  replaceWithThree();
  ASSERT_THAT(clients(), ElementsAre("third", "second", "first"));
  history->setShown(false);
  const auto changes = countOf(*history, &HistoryViewModel::countChanged);
  replace({record(4, ToolName::status, RequestStatus::readComplete, "fourth")});
  EXPECT_EQ(*changes, 0);
  EXPECT_THAT(clients(), ElementsAre("third", "second", "first"));
  history->setShown(true);
  EXPECT_THAT(clients(), ElementsAre("fourth"));
}

}  // namespace
}  // namespace velmora
