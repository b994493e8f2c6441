#include "BridgeCore/Delivery.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::structuredError;

class KeyServiceTest : public testing::CoreFixture {
 protected:
  KeyService service{terminal, sessions, permissions, state, settingsStore, time.clock()};
};

TEST_F(KeyServiceTest, DeliversEachKeyWithItsCount) {
  const auto id = registerTab();
  EXPECT_EQ(service.send({id, TerminalKey::return_, 50}),
            KeyPayload(id, TerminalKey::return_, 50, time.now()));
  EXPECT_EQ(terminal.calls().back(), "sendKey(return x50, /dev/ttys001, 11)");
  service.send({id, TerminalKey::forwardDelete, 1});
  EXPECT_EQ(terminal.calls().back(), "sendKey(forwardDelete x1, /dev/ttys001, 11)");
}

TEST_F(KeyServiceTest, TypesTheKeysOfTheExtendedForm) {
  const auto id = registerTab();
  const auto typed = [&](TerminalKey key, std::int64_t count) {
    service.send({id, key, count});
    return terminal.calls().back();
  };
  EXPECT_EQ(typed(TerminalKey::controlC, 1), "typeUnsubmitted(\x03, /dev/ttys001, 11)");
  EXPECT_EQ(typed(TerminalKey::controlZ, 1), "typeUnsubmitted(\x1A, /dev/ttys001, 11)");
  EXPECT_EQ(typed(TerminalKey::enter, 1), "typeUnsubmitted(\r, /dev/ttys001, 11)");
  EXPECT_EQ(typed(TerminalKey::f12, 2), "typeUnsubmitted(\033[24~\033[24~, /dev/ttys001, 11)");
}

TEST_F(KeyServiceTest, SaysHowItLeftTheSessionWhenThatIsAsked) {
  const auto id = registerTab();
  EXPECT_EQ(service.send({id, TerminalKey::tab, 1}).session, std::nullopt);
  Caller caller;
  caller.extended = true;
  EXPECT_EQ(service.send({id, TerminalKey::tab, 1}, caller).session, SessionState(registry.session(id)));
}

TEST_F(KeyServiceTest, ChecksTheCountFirst) {
  for (const std::int64_t count : {0, 51}) {
    EXPECT_THROW(service.send({Uuid{}, TerminalKey::tab, count}), ToolValidationError);
  }
  EXPECT_TRUE(terminal.calls().empty());
}

TEST_F(KeyServiceTest, RefusesLikeACommandUnderItsOwnName) {
  const auto send = [&](const Uuid& id) {
    return structuredError([&] { service.send({id, TerminalKey::tab, 1}); });
  };
  EXPECT_EQ(send(Uuid{}).code, ErrorCode::sessionNotFound);
  const auto id = registerTab();
  terminal.tabs[0].busy = true;
  EXPECT_EQ(send(id), catalogue::sessionBusy(catalogue::BusyInput::keys, registry.session(id).reference()));
  registry.setPermission(SessionPermission::readOnly, id);
  EXPECT_EQ(send(id).code, ErrorCode::sessionNotAllowed);
  EXPECT_EQ(send(id).operation, "terminal_send_key");
  state.set(MCPState::paused);
  EXPECT_EQ(send(id).code, ErrorCode::mcpPaused);
  EXPECT_EQ(send(id).operation, "terminal_send_key");
  EXPECT_EQ(terminal.callCount("sendKey"), 0u);
}

TEST_F(KeyServiceTest, ATabThatTurnedBusyMeanwhileIsRefusedInTheSameWords) {
  const auto id = registerTab();
  terminal.failWith("sendKey", StructuredError{.code = ErrorCode::sessionBusy});
  EXPECT_EQ(structuredError([&] {
              service.send({id, TerminalKey::tab, 1});
            }),
            catalogue::sessionBusy(catalogue::BusyInput::keys, registry.session(id).reference()));
}

TEST_F(KeyServiceTest, PressesKeysInABusyTabWhenTheUserAllowsIt) {
  const auto id = registerTab();
  terminal.tabs[0].busy = true;
  allowBusyInput();
  service.send({id, TerminalKey::escape, 2});
  EXPECT_EQ(terminal.calls().back(), "sendKey(escape x2, /dev/ttys001, 11, allowBusy)");
}

}  // namespace
}  // namespace velmora
