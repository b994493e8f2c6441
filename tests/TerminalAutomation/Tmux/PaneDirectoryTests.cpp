#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "TerminalAutomation/Tmux/PaneDirectory.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"

namespace velmora {
namespace {

using testing::samplePane;

/// "window.tab=%pane" of each, in order.
std::string order(const TmuxListing& listing) {
  std::string text;
  for (const ArrangedPane& pane : arrangePanes(listing)) {
    text += std::to_string(pane.windowIndex) + "." + std::to_string(pane.tabIndex) + "=%" +
            std::to_string(pane.row.pane) + " ";
  }
  return text;
}

TEST(PaneTargets, AreWhatTmuxTakesAfterItsOptionT) {
  PaneRow row = samplePane(5, 2);
  row.sessionName = "work";
  row.windowNumber = 1;
  row.paneNumber = 3;
  EXPECT_EQ(paneTargets(row), (std::vector<std::string>{"%5", "work:1.3"}));
}

TEST(ArrangePanes, PutsWindowsOfTheMostRecentClientFirst) {
  TmuxListing listing{.panes = {samplePane(0, 0, 0), samplePane(1, 1, 1), samplePane(2, 2, 2)},
                      .clients = {}};
  listing.clients = {{.activity = 10, .created = 1, .session = 1, .window = 1, .name = "a"},
                     {.activity = 20, .created = 2, .session = 2, .window = 2, .name = "b"}};
  EXPECT_EQ(order(listing), "1.1=%2 2.1=%1 3.1=%0 ");
  listing.clients[0].activity = 20;
  EXPECT_EQ(order(listing), "1.1=%2 2.1=%1 3.1=%0 ") << "the client that came later";
  listing.clients[0].activity = 21;
  EXPECT_EQ(order(listing), "1.1=%1 2.1=%2 3.1=%0 ");
}

TEST(ArrangePanes, OrdersTheOtherWindowsBySessionActivityAndThenByHowLatelyTheyWereCurrent) {
  TmuxListing listing{.panes = {samplePane(0, 0, 0), samplePane(1, 1, 0), samplePane(2, 2, 1)},
                      .clients = {}};
  listing.panes[0].stackIndex = 1;
  listing.panes[1].stackIndex = 0;
  listing.panes[2].sessionActivity = 501;
  EXPECT_EQ(order(listing), "1.1=%2 2.1=%1 3.1=%0 ");
}

TEST(ArrangePanes, CountsTabsFromOneInEachWindow) {
  EXPECT_EQ(order({.panes = {samplePane(4, 1), samplePane(2, 1), samplePane(7, 2)}, .clients = {}}),
            "1.1=%4 1.2=%2 2.1=%7 ");
}

TEST(ArrangePanes, ListsAWindowOfSeveralSessionsOnceByTheOneInFront) {
  TmuxListing listing{
      .panes = {samplePane(0, 0, 0), samplePane(0, 0, 1), samplePane(1, 1, 1), samplePane(0, 0, 1)},
      .clients = {{.activity = 1, .created = 1, .session = 1, .window = 0, .name = "c"}}};
  EXPECT_EQ(order(listing), "1.1=%0 2.1=%1 ");
  EXPECT_EQ(arrangePanes(listing).front().row.sessionName, "s1");
}

TEST(ArrangePanes, LeavesOutADeadPaneWhoseTerminalHasAnotherOwner) {
  TmuxListing listing{.panes = {samplePane(0, 0), samplePane(1, 0), samplePane(2, 0)}, .clients = {}};
  listing.panes[0].dead = true;
  listing.panes[0].tty = listing.panes[2].tty;
  EXPECT_EQ(order(listing), "1.2=%1 1.3=%2 ");
  listing.panes[2].dead = true;
  EXPECT_EQ(order(listing), "1.2=%1 1.3=%2 ") << "of two dead ones the younger";
  listing.panes[0].dead = false;
  EXPECT_EQ(order(listing), "1.1=%0 1.2=%1 ");
}

TEST(ArrangePanes, LeavesOutAPaneWithoutATerminal) {
  TmuxListing listing{.panes = {samplePane(0, 0), samplePane(1, 0)}, .clients = {}};
  listing.panes[0].tty = "";
  EXPECT_EQ(order(listing), "1.2=%1 ");
}

TEST(ArrangePanes, TitlesHelpAPerson) {
  PaneRow row = samplePane(0, 0);
  EXPECT_EQ(paneTitle(row), "s0: shell");
  row.title = "notes.txt";
  EXPECT_EQ(paneTitle(row), "s0: notes.txt");
  row.host = "desk.example.org";
  row.title = "desk";
  EXPECT_EQ(paneTitle(row), "s0: shell");
  row.title = "";
  EXPECT_EQ(paneTitle(row), "s0: shell");
  row.windowName = "";
  EXPECT_EQ(paneTitle(row), "s0");
}

TEST(PaneDirectory, WindowIdsCarryTheServersStart) {
  PaneDirectory ids;
  const PaneRow row = samplePane(5, 3);
  EXPECT_EQ(ids.enter({row}), (1'700'000'000 % (1 << 29)) * std::int64_t{1 << 24} + 3);
  PaneRow later = row;
  later.serverStart += 1;
  EXPECT_NE(ids.enter({later}), ids.enter({row}));
  EXPECT_LT(ids.enter({{.serverStart = std::int64_t{1} << 40, .window = (1 << 24) - 1, .tty = "t"}}),
            std::int64_t{1} << 53);
}

TEST(PaneDirectory, WindowIdsAreTheSameForAllPanesOfAWindow) {
  PaneDirectory ids;
  EXPECT_EQ(ids.enter({samplePane(1, 3)}), ids.enter({samplePane(2, 3)}));
}

TEST(PaneDirectory, WindowIdsChangeForGoodWhenATerminalGoesToAnotherProgram) {
  PaneDirectory ids;
  const PaneRow first = samplePane(1, 3);
  const std::int64_t original = ids.enter({first});
  PaneRow reused = first;
  reused.pane = 9;
  PaneRow respawned = first;
  respawned.process = 77;
  PaneRow otherServer = first;
  otherServer.serverProcess = 101;
  std::vector<std::int64_t> seen{original};
  for (const PaneRow& row : {reused, respawned, otherServer, reused}) {
    const std::int64_t id = ids.enter({row});
    EXPECT_EQ(std::count(seen.begin(), seen.end(), id), 0);
    EXPECT_EQ(ids.enter({row}), id);
    EXPECT_LT(id, std::int64_t{1} << 53);
    seen.push_back(id);
  }
}

TEST(PaneDirectory, WindowIdsAreNotGivenAgainAfterTheirTerminalWasForgotten) {
  PaneDirectory ids;
  const PaneRow first = samplePane(1, 3);
  PaneRow second = first;
  second.pane = 9;
  const std::set<std::int64_t> earlier{ids.enter({first}), ids.enter({second})};
  for (int i = 10; i < 45'000; ++i) ids.enter({samplePane(1, i)});
  PaneRow third = first;
  third.pane = 50'000;
  EXPECT_FALSE(earlier.contains(ids.enter({third})));
  EXPECT_EQ(ids.enter({third}), ids.enter({third}));
}

TEST(PaneDirectory, FindsWhatItEntered) {
  PaneDirectory panes;
  PaneRow row = samplePane(1, 3);
  const TabAddress address{row.tty, panes.enter({row})};
  EXPECT_EQ(panes.find(address), row);
  row.inputOff = true;
  panes.enter({row});
  EXPECT_EQ(panes.find(address), row) << "as it was listed last";
  EXPECT_EQ(panes.find({row.tty, address.windowId + 1}), std::nullopt);
  EXPECT_EQ(panes.find({"/dev/pts/77", address.windowId}), std::nullopt);
}

TEST(PaneDirectory, APaneThatWasListedAloneGetsThePlaceOfItsTerminal) {
  PaneDirectory panes;
  ArrangedPane alone{.row = samplePane(1, 3), .windowIndex = 1, .tabIndex = 1};
  panes.recallPlace(alone);
  EXPECT_EQ(alone.windowIndex, 1) << "nothing is known of it";
  panes.enter({.row = samplePane(1, 3), .windowIndex = 4, .tabIndex = 2});
  panes.recallPlace(alone);
  EXPECT_EQ(alone.windowIndex, 4);
  EXPECT_EQ(alone.tabIndex, 2);
}

TEST(PaneDirectory, FindsNothingUnderTheAddressOfAPaneThatLostItsTerminal) {
  PaneDirectory panes;
  const PaneRow row = samplePane(1, 3);
  const TabAddress address{row.tty, panes.enter({row})};
  for (const auto& change : std::vector<std::function<void(PaneRow&)>>{
           [](PaneRow& other) { other.pane = 9; }, [](PaneRow& other) { other.process = 77; },
           [](PaneRow& other) { other.window = 4; }, [](PaneRow& other) { other.serverStart += 1; }}) {
    PaneRow other = row;
    change(other);
    panes.enter({other});
    EXPECT_EQ(panes.find(address), std::nullopt);
  }
}

TEST(PaneDirectory, WindowIdsForgetEndedServersWhenTheyGrowMany) {
  PaneDirectory ids;
  for (int i = 0; i < 50'000; ++i) {
    PaneRow row = samplePane(1, i);
    row.serverProcess = 1 + i / 10'000;
    EXPECT_EQ(ids.enter({row}) % (1 << 24), i);
  }
}

}  // namespace
}  // namespace velmora
