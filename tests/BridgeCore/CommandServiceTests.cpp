#include "BridgeCore/Delivery.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::structuredError;

// Of a tab that the command closed.
class ClosedWatch final : public TabWatch {
 public:
  Activity glance() override { return Activity::closed; }
  View look(std::int64_t, bool, std::chrono::steady_clock::time_point) override { return {}; }
};

class CommandServiceTest : public testing::CoreFixture {
 protected:
  StructuredError refusalOf(const Uuid& id, const std::string& command = "ls") {
    const auto error = structuredError([&] { service.send({id, command}); });
    EXPECT_EQ(terminal.callCount("send"), 0u) << "nothing may be typed";
    return error;
  }

  CommandService service{terminal, sessions, permissions, state, settingsStore, time.clock()};
};

TEST_F(CommandServiceTest, DeliversTheTextUnchanged) {
  const auto id = registerTab();
  time.advance(3);
  EXPECT_EQ(service.send({id, "  echo 'a\nb' "}), CommandPayload(id, time.now()));
  EXPECT_EQ(terminal.calls().back(), "send(  echo 'a\nb' , /dev/ttys001, 11)");
}

TEST_F(CommandServiceTest, TypesWithoutReturnWhenItIsToldTo) {
  const auto id = registerTab();
  service.send({id, "y", false});
  EXPECT_EQ(terminal.calls().back(), "typeUnsubmitted(y, /dev/ttys001, 11)");
  service.send({id, "y", true});
  EXPECT_EQ(terminal.calls().back(), "send(y, /dev/ttys001, 11)");
}

TEST_F(CommandServiceTest, ChecksTheInputBeforeTheSession) {
  EXPECT_THROW(service.send({Uuid{}, ""}), ToolValidationError);
  EXPECT_THROW(service.send({Uuid{}, std::string(65537, 'x')}), ToolValidationError);
  EXPECT_TRUE(terminal.calls().empty());
  const auto id = registerTab();
  EXPECT_NO_THROW(service.send({id, std::string(65536, 'x')}));
}

TEST_F(CommandServiceTest, ChecksTheSessionBeforeThePause) {
  state.set(MCPState::paused);
  EXPECT_EQ(refusalOf(Uuid{}).code, ErrorCode::sessionNotFound);
  const auto id = registerTab();
  const auto error = refusalOf(id);
  EXPECT_EQ(error.code, ErrorCode::mcpPaused);
  EXPECT_EQ(error.operation, "terminal_send_command");
  ASSERT_TRUE(error.session);
  EXPECT_EQ(error.session->tty, "/dev/ttys001");
}

TEST_F(CommandServiceTest, ChecksThePauseBeforeThePermission) {
  const auto id = registerTab(SessionPermission::readOnly);
  state.set(MCPState::paused);
  EXPECT_EQ(refusalOf(id).code, ErrorCode::mcpPaused);
}

TEST_F(CommandServiceTest, ChecksThePermissionBeforeBusy) {
  for (const auto permission : {SessionPermission::readOnly, SessionPermission::blocked}) {
    const auto id = registerTab(permission);
    terminal.tabs[0].busy = true;
    const auto error = refusalOf(id);
    EXPECT_EQ(error.code, ErrorCode::sessionNotAllowed);
    EXPECT_EQ(error.operation, "terminal_send_command");
    EXPECT_FALSE(error.retryable);
  }
}

TEST_F(CommandServiceTest, RefusesABusyTabUnlessTheUserAllowsIt) {
  const auto id = registerTab(SessionPermission::allowed);
  terminal.tabs[0].busy = true;
  EXPECT_EQ(refusalOf(id),
            catalogue::sessionBusy(catalogue::BusyInput::command, registry.session(id).reference()));
  allowBusyInput();
  service.send({id, "y"});
  EXPECT_EQ(terminal.calls().back(), "send(y, /dev/ttys001, 11, allowBusy)");
}

TEST_F(CommandServiceTest, ABusyWindowOfTheBridgesOwnAcceptsInputIfAllowedUntilTheUserHasSeenIt) {
  auto own = testing::tab("/dev/ttys009", 19);
  own.busy = own.neverShown = true;
  auto other = testing::tab("/dev/ttys001", 11);
  other.busy = other.neverShown = true;
  terminal.tabs = {own, other};
  const auto id = registry.registerCreated(own, time.now()).sessionId;
  EXPECT_EQ(refusalOf(id).code, ErrorCode::sessionBusy) << "off by default";
  settingsStore.save({.allowOwnBusySessionInput = true});
  for (const auto& session : sessions.list({})) {
    if (session.sessionId == id) continue;
    EXPECT_EQ(refusalOf(session.sessionId).code, ErrorCode::sessionBusy) << "the user opened it";
  }
  service.send({id, "y"});
  EXPECT_EQ(terminal.calls().back(), "send(y, /dev/ttys009, 19, allowBusy)");
  terminal.tabs[0].neverShown = false;
  EXPECT_EQ(structuredError([&] { service.send({id, "y"}); }).code, ErrorCode::sessionBusy);
  terminal.tabs[0].neverShown = true;
  EXPECT_EQ(structuredError([&] {
              service.send({id, "y"});
            }).code,
            ErrorCode::sessionBusy)
      << "what the user saw once may hold what the user began";
  EXPECT_EQ(terminal.callCount("send"), 1u);
}

TEST_F(CommandServiceTest, AnIdleWindowOfTheBridgesOwnIsGuardedAsEveryOther) {
  auto own = testing::tab("/dev/ttys009", 19);
  own.neverShown = true;
  terminal.tabs = {own};
  const auto id = registry.registerCreated(own, time.now()).sessionId;
  settingsStore.save({.allowOwnBusySessionInput = true});
  service.send({id, "ls"});
  EXPECT_EQ(terminal.calls().back(), "send(ls, /dev/ttys009, 19)")
      << "a half-typed line, a question or a secret is still found";
}

TEST_F(CommandServiceTest, TellsOfWhatWasTypedBeforeItWaitsForTheEnd) {
  const auto id = registerTab();
  std::vector<std::string> calls;
  std::size_t told = 0;
  CommandService telling(terminal, sessions, permissions, state, settingsStore, time.clock(),
                         [&](const Uuid& session) {
                           EXPECT_EQ(session, id);
                           calls = terminal.calls();
                           ++told;
                         });
  terminal.tabWatch = std::make_shared<ClosedWatch>();
  EXPECT_TRUE(telling.send({.sessionId = id, .command = "ls", .waitSeconds = 1}).completion);
  EXPECT_EQ(told, 1u);
  EXPECT_EQ(calls.back(), "send(ls, /dev/ttys001, 11)") << "nothing was asked of the terminal in between";
}

TEST_F(CommandServiceTest, TellsOfNothingThatWasNotTyped) {
  const auto id = registerTab(SessionPermission::readOnly);
  CommandService telling(terminal, sessions, permissions, state, settingsStore, time.clock(),
                         [](const Uuid&) { ADD_FAILURE() << "nothing was typed"; });
  structuredError([&] { telling.send({id, "ls"}); });
  registry.setPermission(SessionPermission::managed, id);
  terminal.failWith("send", StructuredError{.code = ErrorCode::terminalNotAvailable, .message = "no answer"});
  structuredError([&] { telling.send({id, "ls"}); });
  EXPECT_EQ(terminal.callCount("send"), 1u);
}

TEST_F(CommandServiceTest, AMovedTabIsRefusedAsStale) {
  const auto id = registerTab();
  terminal.tabs[0].windowId = 12;
  EXPECT_EQ(refusalOf(id).code, ErrorCode::sessionStale);
}

TEST_F(CommandServiceTest, ErrorsOfTheAdapterPassUnchanged) {
  const auto id = registerTab();
  terminal.failWith("send", PlatformError("d", -1743));
  EXPECT_THROW(service.send({id, "ls"}), PlatformError);
}

TEST_F(CommandServiceTest, AnErrorInTheAdaptersWordsNamesTheSession) {
  const auto id = registerTab();
  terminal.failWith("send", StructuredError{.code = ErrorCode::terminalNotAvailable, .message = "no answer"});
  const auto error = structuredError([&] { service.send({id, "ls"}); });
  EXPECT_EQ(error.message, "no answer");
  EXPECT_EQ(error.operation, "terminal_send_command");
  EXPECT_EQ(error.session, registry.session(id).reference());
}

TEST_F(CommandServiceTest, AnErrorOfTheListingNamesTheToolAndTheSessionThatWereCalled) {
  const auto id = registerTab();
  terminal.failWith("listSessions",
                    StructuredError{.code = ErrorCode::terminalNotAvailable, .message = "no answer"});
  const auto error = structuredError([&] { service.send({id, "ls"}); });
  EXPECT_EQ(error.operation, "terminal_send_command");
  EXPECT_EQ(error.session, SessionReference{.sessionId = id});
}

TEST_F(CommandServiceTest, ATabThatTurnedBusyMeanwhileIsRefusedInTheSameWords) {
  const auto id = registerTab();
  terminal.failWith("send", StructuredError{.code = ErrorCode::sessionBusy});
  EXPECT_EQ(structuredError([&] {
              service.send({id, "ls"});
            }),
            catalogue::sessionBusy(catalogue::BusyInput::command, registry.session(id).reference()));
}

TEST_F(CommandServiceTest, WhatIsNoProgramThatRunsIsSaidInTheAdaptersWords) {
  const auto id = registerTab();
  for (const bool allowed : {false, true}) {
    if (allowed) allowBusyInput();
    terminal.failWith("send",
                      StructuredError{.code = ErrorCode::sessionBusy, .message = "asks for a secret"});
    const auto error = structuredError([&] { service.send({id, "ls"}); });
    EXPECT_EQ(error.message, "asks for a secret");
    EXPECT_EQ(error.operation, "terminal_send_command");
    EXPECT_EQ(error.session, registry.session(id).reference());
  }
}

}  // namespace
}  // namespace velmora
