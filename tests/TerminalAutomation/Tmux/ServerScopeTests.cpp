#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/ServerScope.h"

namespace velmora {
namespace {

TEST(ServerScope, KnowsAService) {
  for (
      const char* const groups :
      {"0::/user.slice/user-1000.slice/user@1000.service/app.slice/velmora-headless.service\n",
       "0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-velmora@autostart.service\n",
       "0::/system.slice/velmora.service/part\n",
       "12:memory:/x\n1:name=systemd:/user.slice/user-1000.slice/user@1000.service/velmora.service\n0::/\n"}) {
    EXPECT_TRUE(runsInService(groups)) << groups;
  }
}

TEST(ServerScope, NothingElseIsAService) {
  for (const char* const groups :
       {"", "\n", "0::/\n", "0::/user.slice/user-1000.slice/session-3.scope\n",
        "0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-gnome-velmora-123.scope\n",
        "0::/user.slice/user-1000.slice/user@1000.service/tmux-spawn-1.scope/part\n",
        "4:cpu:/velmora.service\n", "0::/docker/1234\n", "no groups"}) {
    EXPECT_FALSE(runsInService(groups)) << groups;
  }
}

}  // namespace
}  // namespace velmora
