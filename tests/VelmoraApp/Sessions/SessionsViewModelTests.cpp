#include <QtCore/QLocale>
#include <QtTest/QAbstractItemModelTester>

#include "VelmoraApp/AppModel/Translation.h"
#include "VelmoraApp/Sessions/SessionsViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/ModelRows.h"

namespace velmora {
namespace {

using testing::cell;
using testing::column;
using testing::countOf;
using ::testing::ElementsAre;
using testing::spinUntil;
using testing::textCell;

// Rows of the picker.
constexpr int readOnly = 2;
constexpr int blocked = 3;

class SessionsViewModelTest : public testing::AppFixture {
 protected:
  void start() {
    startApp();
    viewModel = std::make_unique<SessionsViewModel>(*app);
    tester = std::make_unique<QAbstractItemModelTester>(
        viewModel->sessions(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  }
  ~SessionsViewModelTest() override {
    tester.reset();
    viewModel.reset();
  }
  const SessionListModel& rows() { return *viewModel->sessions(); }
  QString idOf(int row) { return cell(rows(), row, "sessionId").toString(); }

  std::unique_ptr<SessionsViewModel> viewModel;
  std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(SessionsViewModelTest, ListsTheKnownSessions) {
  terminal->tabs[1].busy = true;
  terminal->tabs[1].title = "빌드 👩‍👩‍👧";
  start();
  EXPECT_EQ(viewModel->count(), 2);
  EXPECT_THAT(column(rows(), "title"), ElementsAre("title of /dev/ttys001", "빌드 👩‍👩‍👧"));
  EXPECT_THAT(column(rows(), "tty"), ElementsAre("/dev/ttys001", "/dev/ttys002"));
  EXPECT_THAT(column(rows(), "busy"), ElementsAre("false", "true"));
  EXPECT_THAT(column(rows(), "permission"), ElementsAre("managed", "managed"));
  EXPECT_THAT(column(rows(), "position"), ElementsAre("Window 1, tab 1", "Window 2, tab 1"));
  EXPECT_THAT(column(rows(), "bridgeCreated"), ElementsAre("false", "false"));
  EXPECT_THAT(column(rows(), "selected"), ElementsAre("true", "true"));
  EXPECT_THAT(column(rows(), "lastRequest"), ElementsAre("", ""));
  EXPECT_THAT(testing::texts(viewModel->permissions()),
              ElementsAre("managed", "allowed", "readOnly", "blocked"));
}

TEST_F(SessionsViewModelTest, SaysWhatEachPermissionLetsAgentsDo) {
  start();
  EXPECT_THAT(testing::texts(viewModel->permissionCaptions()),
              ElementsAre("Agents read and type", "Agents read and type, as you allowed", "Agents read only",
                          "Agents neither read nor type"));
}

TEST_F(SessionsViewModelTest, FollowsWhenASessionWasUsed) {
  start();
  EXPECT_EQ(textCell(rows(), 0, "lastRequest"), "");
  EXPECT_TRUE(sendCommand("ls").ok);
  pollRecords();
  EXPECT_NE(textCell(rows(), 0, "lastRequest"), "");
  EXPECT_EQ(textCell(rows(), 1, "lastRequest"), "");
}

TEST_F(SessionsViewModelTest, ABlockedSessionStaysListedWithThatPermission) {
  start();
  const QPersistentModelIndex first = rows().index(0);
  andRefresh([this] { viewModel->setPermission(idOf(0), blocked); });
  EXPECT_EQ(viewModel->count(), 2);
  EXPECT_EQ(textCell(rows(), 0, "permission"), "blocked");
  EXPECT_EQ(cell(rows(), 0, "permissionIndex").toInt(), 3);
  EXPECT_TRUE(first.isValid()) << "the row stays the same row";
  viewModel->setIncludeBusy(false);
  viewModel->setIncludeReadOnly(false);
  EXPECT_EQ(viewModel->count(), 2) << "neither filter hides a blocked session";
}

TEST_F(SessionsViewModelTest, TheFiltersHideBusyAndReadOnlySessions) {
  terminal->tabs[0].busy = true;
  start();
  andRefresh([this] { viewModel->setPermission(idOf(1), readOnly); });
  const auto changes = countOf(*viewModel, &SessionsViewModel::countChanged);
  viewModel->setIncludeBusy(false);
  EXPECT_THAT(column(rows(), "tty"), ElementsAre("/dev/ttys002"));
  viewModel->setIncludeReadOnly(false);
  EXPECT_THAT(column(rows(), "tty"), ElementsAre());
  EXPECT_EQ(*changes, 2);
  EXPECT_EQ(viewModel->emptyText(), "2 sessions are hidden by the filters.");
  viewModel->setIncludeBusy(true);
  EXPECT_THAT(column(rows(), "tty"), ElementsAre("/dev/ttys001"));
  viewModel->setIncludeReadOnly(true);
  EXPECT_EQ(viewModel->count(), 2);
}

TEST_F(SessionsViewModelTest, AnEmptyListSaysWhatToDo) {
  terminal->tabs.clear();
  start();
  EXPECT_EQ(viewModel->count(), 0);
  EXPECT_EQ(viewModel->emptyTitle(), "No Terminal sessions");
  EXPECT_EQ(viewModel->emptyText(), "Open Fake or create a managed session from an MCP client.");
  terminal->tabs = {testing::tab("/dev/ttys001", 11)};
  terminal->tabs[0].busy = true;
  viewModel->setIncludeBusy(false);
  andRefresh([this] { viewModel->refresh(); });
  EXPECT_EQ(viewModel->emptyText(), "1 session is hidden by the filters.");
}

TEST_F(SessionsViewModelTest, ARefreshChangesOnlyTheRowsThatDiffer) {
  start();
  const QPersistentModelIndex second = rows().index(1);
  std::vector<int> changed;
  QObject::connect(&rows(), &SessionListModel::dataChanged, &rows(),
                   [&](const QModelIndex& first) { changed.push_back(first.row()); });
  const auto resets = countOf(*viewModel->sessions(), &SessionListModel::modelReset);
  time.advance(60);
  terminal->tabs[1].title = "new title";
  andRefresh([this] { viewModel->refresh(); });
  EXPECT_THAT(changed, ElementsAre(1));
  EXPECT_EQ(textCell(rows(), 1, "title"), "new title");
  terminal->tabs.erase(terminal->tabs.begin());
  andRefresh([this] { viewModel->refresh(); });
  EXPECT_EQ(second.row(), 0);
  EXPECT_EQ(*resets, 0);
}

TEST_F(SessionsViewModelTest, ShowsASessionInTheTerminal) {
  start();
  andRefresh([this] { viewModel->focus(idOf(1)); });
  EXPECT_THAT(terminal->calls(), ::testing::Contains("focus(/dev/ttys002, 12)"));
  EXPECT_EQ(viewModel->problem(), "");
  EXPECT_NE(textCell(rows(), 1, "lastRequest"), "");
}

TEST_F(SessionsViewModelTest, SaysWhyAnActionFailedUntilTheNext) {
  start();
  terminal->tabs.pop_back();
  int repeats = 0;
  QObject::connect(&rows(), &SessionListModel::dataChanged, &rows(), [&] { ++repeats; });
  const auto id = idOf(1);
  andRefresh([&] { viewModel->focus(id); });
  EXPECT_EQ(viewModel->problem(),
            "The Terminal session is no longer the registered tab. List sessions and use the "
            "newly issued sessionId.");
  EXPECT_GE(repeats, 2) << "the pickers show again what holds";
  viewModel->setPermission(id, blocked);
  EXPECT_EQ(viewModel->problem(), "") << "a new attempt";
  ASSERT_TRUE(spinUntil([this] { return !viewModel->problem().isEmpty() && !viewModel->isLoading(); }));
  viewModel->dismissProblem();
  EXPECT_EQ(viewModel->problem(), "");
}

TEST_F(SessionsViewModelTest, SaysWhyAnActionFailedInTheLanguageOfNow) {
  start();
  app->setPaused(true);
  andRefresh([this] { viewModel->focus(idOf(1)); });
  EXPECT_TRUE(viewModel->problem().startsWith("MCP change operations are paused."));
  {
    const auto korean = Translation::installed(Language::korean);
    EXPECT_FALSE(viewModel->problem().contains("MCP change operations"));
  }
  QLocale::setDefault(QLocale::system());
}

TEST_F(SessionsViewModelTest, IgnoresWhatDoesNotExist) {
  start();
  viewModel->setPermission("no id", blocked);
  for (const int row : {-1, 4}) viewModel->setPermission(idOf(0), row);
  viewModel->focus("");
  app->poll();
  QCoreApplication::processEvents();
  EXPECT_EQ(terminal->callCount("focus"), 0u);
  EXPECT_FALSE(viewModel->isLoading());
}

}  // namespace
}  // namespace velmora
