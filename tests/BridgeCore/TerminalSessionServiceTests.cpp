#include <atomic>
#include <future>
#include <thread>

#include "BridgeCore/TerminalSessionService.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::structuredError;
using testing::tab;

class TerminalSessionServiceTest : public testing::CoreFixture {};

TEST_F(TerminalSessionServiceTest, ListsByPolicyAndFilters) {
  sessions.setPolicy(SessionPolicy::selective);
  terminal.tabs = {tab("/dev/a", 1), tab("/dev/b", 2, 2)};
  EXPECT_TRUE(sessions.list({.includeReadOnly = false}).empty());
  EXPECT_EQ(registry.currentSessions().size(), 2u) << "what a filter drops is registered all the same";
  EXPECT_EQ(sessions.list({}).size(), 2u);
}

TEST_F(TerminalSessionServiceTest, DropsBusyTabsOnlyWhenAsked) {
  terminal.tabs = {tab("/dev/a", 1), tab("/dev/b", 2, 2)};
  terminal.tabs[1].busy = true;
  EXPECT_EQ(sessions.list({.includeBusy = true}).size(), 2u);
  const auto idle = sessions.list({.includeBusy = false});
  ASSERT_EQ(idle.size(), 1u);
  EXPECT_EQ(idle[0].tty, "/dev/a");
}

TEST_F(TerminalSessionServiceTest, KnowsNoSessionsOfATerminalThatDoesNotRunAnyMore) {
  const auto stopped = [this](auto error) {
    terminal.failures.clear();
    const auto id = registerTab();
    terminal.failWith("listSessions", std::move(error));
    EXPECT_ANY_THROW(sessions.list({}));
    EXPECT_ANY_THROW(sessions.validate(id, "terminal_x"));
  };
  stopped(StructuredError{.code = ErrorCode::terminalNotRunning, .message = "No tmux server is running."});
  EXPECT_TRUE(registry.currentSessions().empty());
  stopped(PlatformError("d", -600));
  EXPECT_TRUE(registry.currentSessions().empty());
  stopped(PlatformError("d", -1712));
  EXPECT_EQ(registry.currentSessions().size(), 1u) << "it may still be there";
}

TEST_F(TerminalSessionServiceTest, ListsBlockedSessionsLikeTheOthers) {
  const auto id = registerTab(SessionPermission::blocked);
  const auto listed = sessions.list({.includeReadOnly = false, .includeBusy = false});
  ASSERT_EQ(listed.size(), 1u);
  EXPECT_EQ(listed[0].sessionId, id);
}

TEST_F(TerminalSessionServiceTest, TheActiveSessionIsTheFirstSelectedOne) {
  terminal.tabs = {tab("/dev/c", 2, 2, 1), tab("/dev/b", 1, 1, 2), tab("/dev/a", 1, 1, 1)};
  terminal.tabs[2].selected = false;
  terminal.tabs[1].selected = true;
  EXPECT_EQ(sessions.active().tty, "/dev/b");
}

TEST_F(TerminalSessionServiceTest, WithoutASelectedTabThereIsNoActiveSession) {
  EXPECT_EQ(structuredError([&] { sessions.active(); }).code, ErrorCode::noTerminalWindows);
  terminal.tabs = {tab("/dev/a", 1, 1, 2)};
  const auto error = structuredError([&] { sessions.active(); });
  EXPECT_EQ(error.code, ErrorCode::noTerminalWindows);
  EXPECT_TRUE(error.retryable);
}

TEST_F(TerminalSessionServiceTest, CreatesManagedWindowsWhateverThePolicy) {
  sessions.setPolicy(SessionPolicy::selective);
  time.advance(5);
  const auto created = sessions.create({});
  EXPECT_EQ(created.permission, SessionPermission::managed);
  EXPECT_TRUE(created.bridgeCreated);
  EXPECT_EQ(created.firstSeenAt, time.now());
  terminal.tabs = {terminal.created};
  sessions.setPolicy(SessionPolicy::safe);
  EXPECT_EQ(sessions.list({})[0].permission, SessionPermission::managed);
}

TEST_F(TerminalSessionServiceTest, RefusesToCreateBeforeItTouchesTheTerminal) {
  EXPECT_THROW(sessions.create({.kind = SessionCreationKind::tab}), ToolValidationError);
  EXPECT_THROW(sessions.create({.inSessionId = Uuid{}}), ToolValidationError);
  EXPECT_TRUE(terminal.calls().empty());
}

TEST_F(TerminalSessionServiceTest, ValidatesAgainstAListingOfItsOwn) {
  const auto id = registerTab();
  const auto before = terminal.callCount("listSessions");
  terminal.tabs[0].title = "changed";
  EXPECT_EQ(sessions.validate(id, "terminal_x").title, "changed");
  EXPECT_EQ(terminal.callCount("listSessions"), before + 1);
  terminal.tabs.clear();
  EXPECT_EQ(structuredError([&] { sessions.validate(id, "terminal_x"); }).code, ErrorCode::sessionStale);
}

TEST_F(TerminalSessionServiceTest, AsksForTheOneTabThatTheIdNames) {
  terminal.listsTabsAlone = true;
  terminal.tabs = {tab("/dev/a", 1), tab("/dev/b", 2, 2)};
  const auto id = sessions.list({})[1].sessionId;
  terminal.tabs[1].busy = true;
  EXPECT_TRUE(sessions.validate(id, "terminal_x").busy);
  EXPECT_EQ(terminal.calls().back(), "listTab(/dev/b)");
  EXPECT_EQ(registry.currentSessions().size(), 2u) << "the other tab, which nobody looked for, has not gone";
  terminal.tabs[1].windowId = 3;
  EXPECT_EQ(structuredError([&] { sessions.validate(id, "terminal_x"); }).code, ErrorCode::sessionStale);
}

TEST_F(TerminalSessionServiceTest, AnIdWithoutATabIsRefusedOnlyByATerminalThatAnswers) {
  terminal.listsTabsAlone = true;
  EXPECT_EQ(structuredError([&] { sessions.validate(Uuid{}, "terminal_x"); }).code,
            ErrorCode::sessionNotFound);
  terminal.failWith("listSessions", PlatformError("d", -1));
  EXPECT_THROW(sessions.validate(Uuid{}, "terminal_x"), PlatformError);
}

TEST_F(TerminalSessionServiceTest, FocusesReadOnlyButNotBlockedSessions) {
  const auto id = registerTab(SessionPermission::readOnly);
  EXPECT_EQ(sessions.focus(id, permissions).sessionId, id);
  EXPECT_EQ(terminal.calls().back(), "focus(/dev/ttys001, 11)");
  registry.setPermission(SessionPermission::blocked, id);
  const auto error = structuredError([&] { sessions.focus(id, permissions); });
  EXPECT_EQ(error.code, ErrorCode::sessionNotAllowed);
  EXPECT_EQ(error.operation, "terminal_focus_session");
  EXPECT_EQ(terminal.callCount("focus"), 1u);
}

// The clock is read between a listing and the registry, so that is where the test holds the older listing up.
TEST_F(TerminalSessionServiceTest, ListingsReachTheRegistryInTheOrderInWhichTheyWereTaken) {
  std::promise<void> listed;
  std::promise<void> goOn;
  std::atomic<bool> isFirst{true};
  const Clock holdsTheFirst = [&] {
    if (isFirst.exchange(false)) {
      listed.set_value();
      goOn.get_future().wait();
    }
    return Date{};
  };
  TerminalSessionService service{terminal, registry, SessionPolicy::safe, holdsTheFirst};
  terminal.tabs = {tab("/dev/a", 1)};
  std::thread older([&] { service.list({}); });
  listed.get_future().wait();
  terminal.tabs = {tab("/dev/a", 1), tab("/dev/b", 2, 2)};
  std::thread newer([&] { service.list({}); });
  for (int chance = 0; chance < 5000; ++chance) std::this_thread::yield();
  goOn.set_value();
  older.join();
  newer.join();
  EXPECT_EQ(registry.currentSessions().size(), 2u) << "an older listing retired the tab that came after it";
}

TEST_F(TerminalSessionServiceTest, NobodyWaitsForATerminalThatHangsBehindAnotherCaller) {
  constexpr std::size_t callers = 8;
  terminal.listingsHang = true;
  std::vector<std::thread> threads;
  std::atomic<std::size_t> failed = 0;
  for (std::size_t i = 0; i < callers; ++i) {
    threads.emplace_back([&] {
      EXPECT_THROW(sessions.list({}), PlatformError);
      ++failed;
    });
  }
  // Each has asked the terminal although none has its answer.
  while (terminal.callCount("listSessions") < callers) std::this_thread::yield();
  EXPECT_EQ(failed, 0u);
  terminal.failListings(std::make_exception_ptr(PlatformError("d", -1)));
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(failed, callers);
}

TEST_F(TerminalSessionServiceTest, AListingThatFailsLetsTheNextOnePass) {
  terminal.failWith("listSessions", PlatformError("d", -1));
  EXPECT_THROW(sessions.list({}), PlatformError);
  terminal.failures.clear();
  terminal.tabs = {tab("/dev/a", 1)};
  EXPECT_EQ(sessions.list({}).size(), 1u);
}

TEST_F(TerminalSessionServiceTest, AListingFromBeforeAWindowWasThereDoesNotRetireIt) {
  terminal.listingsHang = true;
  std::thread listing([&] { sessions.list({}); });
  while (terminal.callCount("listSessions") < 1) std::this_thread::yield();
  std::thread creating([&] { sessions.create({}); });
  while (terminal.callCount("createWindow") < 1) std::this_thread::yield();
  for (int chance = 0; chance < 5000; ++chance) std::this_thread::yield();
  terminal.releaseListings({});
  listing.join();
  creating.join();
  ASSERT_EQ(registry.currentSessions().size(), 1u);
  EXPECT_TRUE(registry.currentSessions()[0].bridgeCreated);
}

TEST_F(TerminalSessionServiceTest, ErrorsInTheAdaptersWordsNameTheTool) {
  const auto id = registerTab();
  const StructuredError inItsWords{.code = ErrorCode::terminalNotAvailable, .message = "no answer"};
  terminal.failWith("focus", inItsWords);
  EXPECT_EQ(structuredError([&] { sessions.focus(id, permissions); }).operation, "terminal_focus_session");
  terminal.failWith("createWindow", inItsWords);
  EXPECT_EQ(structuredError([&] { sessions.create({}); }).operation, "terminal_create_session");
  terminal.failWith("listSessions", inItsWords);
  EXPECT_EQ(structuredError([&] { sessions.list({}); }).operation, "terminal_list_sessions");
  EXPECT_EQ(structuredError([&] { sessions.active(); }).operation, "terminal_get_active_session");
  const auto focus = structuredError([&] { sessions.focus(id, permissions); });
  EXPECT_EQ(focus.operation, "terminal_focus_session");
  EXPECT_EQ(focus.session, SessionReference{.sessionId = id});
}

TEST_F(TerminalSessionServiceTest, ErrorsOfTheAdapterPassUnchanged) {
  terminal.failWith("listSessions", PlatformError("d", -600));
  EXPECT_THROW(sessions.list({}), PlatformError);
  EXPECT_THROW(sessions.active(), PlatformError);
  terminal.failWith("createWindow", PlatformError("d", -1728));
  EXPECT_THROW(sessions.create({}), PlatformError);
}

}  // namespace
}  // namespace velmora
