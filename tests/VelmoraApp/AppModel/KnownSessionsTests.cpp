#include "VelmoraApp/AppModel/KnownSessions.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using enum SessionPermission;

class KnownSessionsTest : public testing::AppFixture {
 protected:
  /// Two tabs that were found, with these permissions, and a window that the bridge opened.
  void start(SessionPermission first, SessionPermission second) {
    startApp();
    app->coordinator().setPermission(first, app->sessions()[0].sessionId);
    app->coordinator().setPermission(second, app->sessions()[1].sessionId);
    terminal->tabs.push_back(terminal->created);
    EXPECT_TRUE(app->coordinator().createSession(options.bridge.uuid(), {"a client", {}}, {}).ok);
  }
  std::vector<SessionPermission> permissions() {
    std::vector<SessionPermission> found;
    std::vector<TerminalSession> sessions = app->coordinator().registry().currentSessions();
    for (const auto& session : sessions) found.push_back(session.permission);
    return found;
  }
};

TEST_F(KnownSessionsTest, ThePolicySafeLetsAgentsTypeIntoWhatWasFoundBeforeIt) {
  start(readOnly, blocked);
  meetKnownSessions(app->coordinator(), SessionPolicy::safe);
  EXPECT_THAT(permissions(), ::testing::UnorderedElementsAre(managed, blocked, managed));
}

TEST_F(KnownSessionsTest, MakingThemReadOnlyLeavesTheBridgesOwnWindowsAndWhatIsBlocked) {
  start(allowed, blocked);
  EXPECT_TRUE(mayBeTypedInto(app->coordinator().registry().currentSessions()[0]));
  makeKnownSessionsReadOnly(app->coordinator());
  EXPECT_THAT(permissions(), ::testing::UnorderedElementsAre(readOnly, blocked, managed));
  for (const auto& session : app->coordinator().registry().currentSessions())
    EXPECT_FALSE(mayBeTypedInto(session));
}

}  // namespace
}  // namespace velmora
