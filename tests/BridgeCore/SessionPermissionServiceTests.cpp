#include "BridgeCore/SessionPermissionService.h"
#include "tests/support/CoreFixture.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

TEST(SessionPermissionService, FollowsTheMatrix) {
  struct Row {
    SessionPermission permission;
    bool read;
    bool send;
  };
  for (const auto& row :
       {Row{SessionPermission::managed, true, true}, Row{SessionPermission::allowed, true, true},
        Row{SessionPermission::readOnly, true, false}, Row{SessionPermission::blocked, false, false}}) {
    TerminalSession session;
    session.permission = row.permission;
    EXPECT_EQ(SessionPermissionService::canRead(session), row.read) << wireName(row.permission);
    EXPECT_EQ(SessionPermissionService::canFocus(session), row.read) << wireName(row.permission);
    EXPECT_EQ(SessionPermissionService::canSend(session), row.send) << wireName(row.permission);
  }
}

class SessionPermissionServiceTest : public testing::CoreFixture {};

TEST_F(SessionPermissionServiceTest, SetsThePermissionOfAValidSessionOnly) {
  const auto id = registerTab();
  EXPECT_EQ(permissions.set(SessionPermission::blocked, id).permission, SessionPermission::blocked);
  terminal.tabs.clear();
  sessions.list({});
  EXPECT_EQ(testing::structuredError([&] { permissions.set(SessionPermission::managed, id); }).code,
            ErrorCode::sessionNotFound);
  EXPECT_EQ(testing::structuredError([&] { permissions.set(SessionPermission::managed, Uuid{}); }).code,
            ErrorCode::sessionNotFound);
}

}  // namespace
}  // namespace velmora
