#include <algorithm>
#include <set>

#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::eventually;
using testing::structuredError;

class TmuxIdentity : public testing::PrivateTmux {
 protected:
  /// The old name is refused for every operation on a tab, and nothing arrives anywhere.
  void expectRefused(const TerminalTabSnapshot& old) {
    const auto errors = {
        structuredError([&] { executor().send("typed", old.tty, old.windowId, true).get(); }),
        structuredError([&] { executor().send(TerminalKey::tab, 1, old.tty, old.windowId, true).get(); }),
        structuredError(
            [&] { executor().readOutput(OutputSource::visible, 100, old.tty, old.windowId).get(); }),
        structuredError([&] { executor().captureScreen(old.tty, old.windowId).get(); }),
        structuredError([&] { executor().focus(old.tty, old.windowId).get(); }),
    };
    for (const StructuredError& error : errors) {
      EXPECT_EQ(error.code, ErrorCode::sessionStale) << error.operation << ": " << error.message;
      EXPECT_FALSE(error.retryable);
    }
    for (const TerminalTabSnapshot& tab : tabs()) {
      EXPECT_FALSE(tab.tty == old.tty && tab.windowId == old.windowId);
      EXPECT_EQ(visibleText(tab).find("typed"), std::string::npos) << tab.tty;
    }
  }
};

TEST_F(TmuxIdentity, ListsEachPaneAsATabOfItsWindow) {
  startServer();
  tmux({"split-window", "-d", "-t", "%0"});
  tmux({"new-window", "-d"});
  const auto all = tabs();
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0].windowIndex, 1);
  EXPECT_EQ(all[0].tabIndex, 1);
  EXPECT_TRUE(all[0].selected);
  EXPECT_EQ(all[1].windowIndex, 1);
  EXPECT_EQ(all[1].tabIndex, 2);
  EXPECT_FALSE(all[1].selected);
  EXPECT_EQ(all[0].windowId, all[1].windowId);
  EXPECT_EQ(all[2].windowIndex, 2);
  EXPECT_EQ(all[2].tabIndex, 1);
  EXPECT_TRUE(all[2].selected);
  const std::int64_t start = std::stoll(tmux({"display-message", "-p", "#{start_time}"}));
  EXPECT_EQ(all[2].windowId, (start % (1 << 29)) * (1 << 24) + 1);
  EXPECT_LT(all[2].windowId, std::int64_t{1} << 53);
  // tmux names a window after its program once that runs.
  EXPECT_TRUE(eventually([&] { return tabs()[0].title == "main: bash"; }));
}

TEST_F(TmuxIdentity, ListsLinkedAndGroupedWindowsOnce) {
  startServer();
  tmux({"new-session", "-d", "-s", "other", "-x", "80", "-y", "24"});
  tmux({"link-window", "-s", "main:0", "-t", "other:7"});
  tmux({"new-session", "-d", "-s", "twin", "-t", "main"});
  const auto all = tabs();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_NE(all[0].tty, all[1].tty);
  EXPECT_EQ((std::set<std::int64_t>{all[0].windowIndex, all[1].windowIndex}), (std::set<std::int64_t>{1, 2}));
  EXPECT_EQ(executor().status().get().windowCount, 2);
}

TEST_F(TmuxIdentity, ATabIsTheSameWhenItIsListedAlone) {
  startServer({"bash"});
  tmux({"set-option", "-g", "remain-on-exit", "on"});
  tmux({"split-window", "-d", "exec sleep 1000"});
  tmux({"split-window", "-d", "exec true"});
  tmux({"new-window", "-d", "exec cat"});
  tmux({"new-session", "-d", "-s", "other", "-x", "80", "-y", "24", "exec cat"});
  tmux({"link-window", "-s", "main:1", "-t", "other:7"});
  tmux({"new-session", "-d", "-s", "twin", "-t", "main"});
  ASSERT_TRUE(eventually([&] { return tmux({"display-message", "-p", "-t", "%2", "#{pane_dead}"}) == "1"; }));
  const auto alone = [&](const TerminalTabSnapshot& tab) { return executor().listTab(tab.tty).get(); };
  EXPECT_TRUE(eventually([&] {
    const auto all = tabs();
    return all.size() >= 4 && std::all_of(all.begin(), all.end(), [&](const auto& tab) {
             return alone(tab) == std::vector<TerminalTabSnapshot>{tab};
           });
  }));
}

TEST_F(TmuxIdentity, ATabThatHasGoneOrMovedIsNotFoundAlone) {
  startServer();
  tmux({"split-window", "-d"});
  tmux({"split-window", "-d"});
  const auto moved = tabOf("%1");
  const auto gone = tabOf("%2");
  tmux({"break-pane", "-d", "-s", "%1"});
  tmux({"kill-pane", "-t", "%2"});
  const auto found = executor().listTab(moved.tty).get();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_NE(found.front().windowId, moved.windowId);
  EXPECT_TRUE(executor().listTab(gone.tty).get().empty());
}

TEST_F(TmuxIdentity, RefusesTheOldNameAfterAPaneIsBrokenOut) {
  startServer();
  tmux({"split-window", "-d"});
  const auto old = tabOf("%1");
  tmux({"break-pane", "-d", "-s", "%1"});
  expectRefused(old);
}

TEST_F(TmuxIdentity, RefusesTheOldNameAfterAPaneIsJoined) {
  startServer();
  tmux({"new-window", "-d"});
  const auto old = tabOf("%1");
  tmux({"join-pane", "-d", "-s", "%1", "-t", "%0"});
  expectRefused(old);
}

TEST_F(TmuxIdentity, RefusesBothOldNamesAfterPanesAreSwapped) {
  startServer();
  tmux({"new-window", "-d"});
  const auto first = tabOf("%0");
  const auto second = tabOf("%1");
  tmux({"swap-pane", "-d", "-s", "%0", "-t", "%1"});
  expectRefused(first);
  expectRefused(second);
}

TEST_F(TmuxIdentity, KeepsTheNameWhenAWindowMovesOrIsRenumbered) {
  startServer();
  tmux({"new-window", "-d"});
  const auto before = tabOf("%1");
  tmux({"move-window", "-s", "main:1", "-t", "main:9"});
  const auto after = tabOf("%1");
  EXPECT_EQ(after.windowId, before.windowId);
  EXPECT_EQ(after.tty, before.tty);
}

TEST_F(TmuxIdentity, RefusesTheOldNameAfterARespawn) {
  startServer();
  const auto old = tabOf("%0");
  tmux({"respawn-pane", "-k", "-t", "%0"});
  expectRefused(old);
}

TEST_F(TmuxIdentity, RefusesTheOldNameAfterADeadPaneIsRespawnedOnTheSameTerminal) {
  startServer();
  tmux({"set-option", "-g", "remain-on-exit", "on"});
  // The lowest free number is given next; another program on this machine may take it first, then again.
  TerminalTabSnapshot old;
  ASSERT_TRUE(eventually([&] {
    const std::string pane = tmux({"split-window", "-d", "-P", "-F", "#{pane_id}", "exec true"});
    const auto ask = [&](const char* format) { return tmux({"display-message", "-p", "-t", pane, format}); };
    if (!eventually([&] { return ask("#{pane_dead}") == "1"; })) return false;
    old = tabOf(pane);
    tmux({"respawn-pane", "-t", pane, "exec sleep 1000"});
    if (ask("#{pane_tty}") == old.tty) return true;
    tmux({"kill-pane", "-t", pane});
    return false;
  }));
  expectRefused(old);
}

TEST_F(TmuxIdentity, RefusesTheOldNameAfterItsTerminalWentToAnotherPaneOfTheWindow) {
  startServer();
  const auto split = [&] {
    return tmux({"split-window", "-d", "-P", "-F", "#{pane_id}", "exec sleep 1000"});
  };
  const auto ask = [&](const std::string& pane, const char* format) {
    return tmux({"display-message", "-p", "-t", pane, format});
  };
  // The lowest free number is given next; another program on this machine may take it first, then again.
  TerminalTabSnapshot old;
  ASSERT_TRUE(eventually([&] {
    const std::string first = split();
    old = tabOf(first);
    const auto process = static_cast<pid_t>(std::stol(ask(first, "#{pane_pid}")));
    tmux({"kill-pane", "-t", first});
    if (!eventually([&] { return !testing::isAlive(process); })) return false;
    const std::string second = split();
    if (ask(second, "#{pane_tty}") == old.tty) return true;
    tmux({"kill-pane", "-t", second});
    return false;
  }));
  expectRefused(old);
  EXPECT_EQ(tabs().size(), 2u);
}

TEST_F(TmuxIdentity, RefusesTheNamesOfAnEarlierServer) {
  startServer();
  const auto old = tabOf("%0");
  endServer();
  startServer();
  expectRefused(old);
  EXPECT_EQ(tabs().size(), 1u);
}

TEST_F(TmuxIdentity, NeverListsATerminalTwiceWhenADeadPaneOnceHadIt) {
  startServer();
  tmux({"set-option", "-g", "remain-on-exit", "on"});
  tmux({"split-window", "-d", "exec true"});
  ASSERT_TRUE(eventually([&] { return tmux({"display-message", "-p", "-t", "%1", "#{pane_dead}"}) == "1"; }));
  const std::string tty = tmux({"display-message", "-p", "-t", "%1", "#{pane_tty}"});
  for (int i = 0; i < 3; ++i) tmux({"new-window", "-d"});
  std::set<std::string> ttys;
  for (const auto& tab : tabs()) EXPECT_TRUE(ttys.insert(tab.tty).second) << tab.tty;
  EXPECT_TRUE(ttys.contains(tty));
}

TEST_F(TmuxIdentity, RefusesATerminalNameThatIsATmuxFormat) {
  startServer();
  const auto tab = onlyTab();
  EXPECT_EQ(
      structuredError([&] { sendTo({.tty = "#(touch /nowhere)", .windowId = tab.windowId}, "x"); }).code,
      ErrorCode::sessionStale);
  EXPECT_EQ(structuredError([&] { sendTo({.tty = tab.tty, .windowId = tab.windowId + 1}, "x"); }).code,
            ErrorCode::sessionStale);
}

TEST_F(TmuxIdentity, TakesTheTitleThatAProgramSets) {
  startServer({"sh", "-c", "printf '\\033]2;notes – 메모\\007'; exec sleep 1000"});
  ASSERT_TRUE(eventually([&] { return onlyTab().title == "main: notes – 메모"; })) << onlyTab().title;
}

}  // namespace
}  // namespace velmora
