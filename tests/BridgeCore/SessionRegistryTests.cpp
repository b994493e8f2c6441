#include <gtest/gtest.h>

#include <deque>
#include <memory>

#include "BridgeCore/SessionRegistry.h"
#include "tests/support/FakeTerminal.h"
#include "tests/support/FakeTime.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::countingUuids;
using testing::numberedUuid;
using testing::structuredError;
using testing::tab;

constexpr Date atFirst{100};
constexpr Date later{200};
const Uuid generation = numberedUuid(7777);

SessionRegistry makeRegistry() { return {generation, countingUuids()}; }

std::vector<Uuid> idsOf(const std::vector<TerminalSession>& sessions) {
  std::vector<Uuid> ids;
  for (const auto& session : sessions) ids.push_back(session.sessionId);
  return ids;
}

TEST(SessionRegistry, RegistersFoundTabsByPolicy) {
  auto registry = makeRegistry();
  const auto found = registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, atFirst);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0],
            TerminalSession(numberedUuid(1), generation, tab("/dev/ttys001"), SessionPermission::managed,
                            false, atFirst, atFirst, std::nullopt, SessionValidity::valid));
  const auto both =
      registry.reconcile({tab("/dev/ttys001"), tab("/dev/ttys002", 2, 2)}, SessionPolicy::selective, later);
  ASSERT_EQ(both.size(), 2u);
  EXPECT_EQ(both[0].permission, SessionPermission::managed)
      << "a change of policy must not touch what is registered";
  EXPECT_EQ(both[0].firstSeenAt, atFirst);
  EXPECT_EQ(both[0].lastSeenAt, later);
  EXPECT_EQ(both[1].permission, SessionPermission::readOnly);
}

TEST(SessionRegistry, ATabThatAnEarlierRunOpenedIsManagedWhateverThePolicy) {
  auto registry = makeRegistry();
  auto made = tab("/dev/ttys001");
  made.madeByBridge = true;
  const auto both = registry.reconcile({made, tab("/dev/ttys002", 2, 2)}, SessionPolicy::selective, atFirst);
  ASSERT_EQ(both.size(), 2u);
  EXPECT_EQ(both[0].permission, SessionPermission::managed);
  EXPECT_EQ(both[1].permission, SessionPermission::readOnly);
}

TEST(SessionRegistry, RefreshesAKnownTabAndKeepsWhatIsItsOwn) {
  auto registry = makeRegistry();
  const auto id = registry.reconcile({tab("/dev/ttys001", 5)}, SessionPolicy::safe, atFirst)[0].sessionId;
  registry.setPermission(SessionPermission::blocked, id);
  const TerminalTabSnapshot changed{"/dev/ttys001", 5, 3, 4, "vim", true, false};
  const auto session = registry.reconcile({changed}, SessionPolicy::safe, later)[0];
  EXPECT_EQ(session, TerminalSession(id, generation, changed, SessionPermission::blocked, false, atFirst,
                                     later, std::nullopt, SessionValidity::valid));
}

TEST(SessionRegistry, AnAmbiguousListingChangesNothing) {
  auto registry = makeRegistry();
  const auto before = registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, atFirst);
  const std::vector<std::vector<TerminalTabSnapshot>> listings = {
      {tab("/dev/ttys002"), tab("/dev/ttys002", 2)}, {tab("")}, {tab("/dev/ttys003"), tab("")}};
  for (const auto& listing : listings) {
    const auto error = structuredError([&] { registry.reconcile(listing, SessionPolicy::safe, later); });
    EXPECT_EQ(error, (StructuredError{
                         .code = ErrorCode::sessionStale,
                         .message = "Terminal returned an ambiguous or empty TTY identity.",
                         .operation = "terminal_list_sessions",
                         .retryable = true,
                         .recoverySuggestion = "Refresh the session list after Terminal.app settles."}));
    EXPECT_EQ(registry.currentSessions(), before);
  }
}

TEST(SessionRegistry, AMovedTabLosesItsIdNowAndGetsANewOneAtTheNextReconcile) {
  auto registry = makeRegistry();
  const auto id = registry.reconcile({tab("/dev/ttys001", 1)}, SessionPolicy::safe, atFirst)[0].sessionId;
  EXPECT_TRUE(registry.reconcile({tab("/dev/ttys001", 2)}, SessionPolicy::safe, later).empty());
  EXPECT_EQ(structuredError([&] { registry.session(id); }).code, ErrorCode::sessionNotFound);
  const auto renewed = registry.reconcile({tab("/dev/ttys001", 2)}, SessionPolicy::safe, later);
  ASSERT_EQ(renewed.size(), 1u);
  EXPECT_NE(renewed[0].sessionId, id);
}

TEST(SessionRegistry, AnEmptyListingRetiresEverySession) {
  auto registry = makeRegistry();
  const auto ids =
      idsOf(registry.reconcile({tab("/dev/ttys001"), tab("/dev/ttys002", 2)}, SessionPolicy::safe, atFirst));
  EXPECT_TRUE(registry.reconcile({}, SessionPolicy::safe, later).empty());
  for (const auto& id : ids) {
    EXPECT_EQ(structuredError([&] { registry.session(id); }),
              (StructuredError{.code = ErrorCode::sessionNotFound,
                               .message = "The requested Terminal session was not found.",
                               .operation = "session_lookup",
                               .session = SessionReference{.sessionId = id},
                               .retryable = false,
                               .recoverySuggestion = "List sessions and select a current sessionId."}));
  }
}

TEST(SessionRegistry, AVanishedTabThatReappearsGetsAFreshId) {
  auto registry = makeRegistry();
  const auto first = registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, atFirst)[0].sessionId;
  registry.reconcile({}, SessionPolicy::safe, later);
  EXPECT_NE(registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, later)[0].sessionId, first);
}

TEST(SessionRegistry, NeverIssuesAnIdTwice) {
  auto ids = std::make_shared<std::deque<Uuid>>(std::deque{
      numberedUuid(1), numberedUuid(1), numberedUuid(2), numberedUuid(2), numberedUuid(1), numberedUuid(3)});
  SessionRegistry registry(generation, [ids] {
    const auto next = ids->front();
    ids->pop_front();
    return next;
  });
  registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, atFirst);
  registry.reconcile({}, SessionPolicy::safe, atFirst);  // 1 is a tombstone now
  const auto sessions =
      registry.reconcile({tab("/dev/ttys002", 2, 1), tab("/dev/ttys003", 3, 2)}, SessionPolicy::safe, later);
  EXPECT_EQ(idsOf(sessions), (std::vector{numberedUuid(2), numberedUuid(3)}));
}

TEST(SessionRegistry, SortsByWindowThenTab) {
  auto registry = makeRegistry();
  const auto sessions = registry.reconcile(
      {tab("/dev/c", 2, 2, 1), tab("/dev/b", 1, 1, 2), tab("/dev/d", 2, 2, 10), tab("/dev/a", 1, 1, 1)},
      SessionPolicy::safe, atFirst);
  std::string order;
  for (const auto& session : sessions) order += session.tty.back();
  EXPECT_EQ(order, "abcd");
  EXPECT_EQ(registry.currentSessions(), sessions);
}

TEST(SessionRegistry, ACreatedTabIsManagedWhateverThePolicy) {
  auto registry = makeRegistry();
  const auto created = registry.registerCreated(tab("/dev/ttys001"), atFirst);
  EXPECT_EQ(created.permission, SessionPermission::managed);
  EXPECT_TRUE(created.bridgeCreated);
  EXPECT_EQ(registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::selective, later)[0].permission,
            SessionPermission::managed);
}

TEST(SessionRegistry, ACreatedTabThatWasListedMeanwhileKeepsItsId) {
  auto registry = makeRegistry();
  const auto found = registry.reconcile({tab("/dev/ttys001", 4, 2, 3)}, SessionPolicy::selective, atFirst)[0];
  auto snapshot = tab("/dev/ttys001", 4, 9, 9);
  snapshot.title = "other";
  const auto created = registry.registerCreated(snapshot, later);
  auto expected = found;
  expected.permission = SessionPermission::managed;
  expected.bridgeCreated = true;
  expected.lastSeenAt = later;
  EXPECT_EQ(created, expected);
}

TEST(SessionRegistry, ACreatedTabNeverInheritsTheIdOfAClosedTabWithTheSameTty) {
  auto registry = makeRegistry();
  const auto closed = registry.reconcile({tab("/dev/ttys001", 1)}, SessionPolicy::safe, atFirst)[0].sessionId;
  const auto created = registry.registerCreated(tab("/dev/ttys001", 2), later);
  EXPECT_NE(created.sessionId, closed);
  EXPECT_EQ(created.windowId, 2);
  EXPECT_EQ(structuredError([&] { registry.session(closed); }).code, ErrorCode::sessionNotFound);
  EXPECT_EQ(registry.validate(created.sessionId, {tab("/dev/ttys001", 2)}, later).sessionId,
            created.sessionId);
}

TEST(SessionRegistry, ValidatingRefreshesTheSession) {
  auto registry = makeRegistry();
  const auto id = registry.reconcile({tab("/dev/ttys001", 5)}, SessionPolicy::safe, atFirst)[0].sessionId;
  const TerminalTabSnapshot changed{"/dev/ttys001", 5, 3, 4, "vim", true, false};
  const auto session = registry.validate(id, {tab("/dev/ttys009", 9), changed}, later);
  EXPECT_EQ(session, TerminalSession(id, generation, changed, SessionPermission::managed, false, atFirst,
                                     later, std::nullopt, SessionValidity::valid));
  EXPECT_EQ(registry.session(id), session);
}

TEST(SessionRegistry, ASessionThatIsNoLongerItsTabTurnsStaleForEver) {
  const std::vector<std::vector<TerminalTabSnapshot>> listings = {
      {}, {tab("/dev/ttys001", 2)}, {tab("/dev/ttys001"), tab("/dev/ttys001")}, {tab("/dev/ttys0011")}};
  for (const auto& listing : listings) {
    auto registry = makeRegistry();
    const auto session = registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, atFirst)[0];
    EXPECT_EQ(structuredError([&] { registry.validate(session.sessionId, listing, later); }),
              (StructuredError{.code = ErrorCode::sessionStale,
                               .message = "The Terminal session is no longer the registered tab.",
                               .operation = "session_validate",
                               .session = session.reference(),
                               .retryable = false,
                               .recoverySuggestion = "List sessions and use the newly issued sessionId."}));
    EXPECT_EQ(
        structuredError([&] { registry.validate(session.sessionId, {tab("/dev/ttys001")}, later); }).code,
        ErrorCode::sessionNotFound);
    EXPECT_TRUE(registry.currentSessions().empty());
  }
}

TEST(SessionRegistry, AnIdOfAnotherRegistryIsUnknown) {
  auto earlier = makeRegistry();
  const auto id = earlier.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, atFirst)[0].sessionId;
  SessionRegistry registry(numberedUuid(8888), [] { return numberedUuid(5000); });
  registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, atFirst);
  EXPECT_EQ(structuredError([&] { registry.session(id); }).code, ErrorCode::sessionNotFound);
}

TEST(SessionRegistry, APermissionOfAnUnknownOrStaleIdCannotBeSet) {
  auto registry = makeRegistry();
  EXPECT_EQ(
      structuredError([&] { registry.setPermission(SessionPermission::allowed, numberedUuid(99)); }).code,
      ErrorCode::sessionNotFound);
  const auto id = registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, atFirst)[0].sessionId;
  EXPECT_EQ(registry.setPermission(SessionPermission::readOnly, id).permission, SessionPermission::readOnly);
  EXPECT_EQ(registry.session(id).permission, SessionPermission::readOnly);
}

TEST(SessionRegistry, NotesRequestsOfAnySession) {
  auto registry = makeRegistry();
  const auto id = registry.reconcile({tab("/dev/ttys001")}, SessionPolicy::safe, atFirst)[0].sessionId;
  registry.markRequest(id, later);
  EXPECT_EQ(registry.session(id).lastRequestAt, later);
  registry.reconcile({}, SessionPolicy::safe, later);
  registry.markRequest(id, later);                // stale: noted where nobody sees it
  registry.markRequest(numberedUuid(99), later);  // unknown: ignored
  EXPECT_TRUE(registry.currentSessions().empty());
}

}  // namespace
}  // namespace velmora
