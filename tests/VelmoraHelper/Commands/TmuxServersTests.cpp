#include <gmock/gmock.h>

#include "LocalControl/UnixSocketServer.h"
#include "VelmoraHelper/Commands/TmuxServers.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;

TEST(TmuxServers, AreTheSocketsAtWhichSomebodyListens) {
  const TemporaryDirectory folder;
  const auto usual = folder / "tmux-7";
  const auto other = folder / "elsewhere";
  const UnixSocketServer work(usual / "work");
  const UnixSocketServer ofBridge(other / "of-bridge");
  testing::writeFile(usual / "no-socket", "");
  { const UnixSocketServer gone(folder / "g/gone"); }
  const Environment environment{{"TMUX_TMPDIR", folder.path().string()}};
  EXPECT_THAT(answeringTmuxServers(environment, 7, other / "of-bridge"),
              ElementsAre(other / "of-bridge", usual / "work"));
  EXPECT_THAT(answeringTmuxServers(environment, 8, folder / "none/default"), ::testing::IsEmpty());
}

TEST(TmuxServers, AreNamedWhereTheBridgeLooksAtAnother) {
  const auto only = checkTmuxServers("/t/default", {"/t/default"});
  EXPECT_TRUE(only.ok);
  EXPECT_EQ(only.finding, "the bridge looks at /t/default");
  EXPECT_EQ(checkTmuxServers("/t/default", {}).finding, only.finding);
  const auto both = checkTmuxServers("/t/default", {"/t/default", "/t/a", "/t/b"});
  EXPECT_TRUE(both.ok);
  EXPECT_EQ(both.finding, "the bridge looks at /t/default; not used by Velmora: /t/a, /t/b");
  const auto wrong = checkTmuxServers("/t/default", {"/t/work"});
  EXPECT_FALSE(wrong.ok);
  EXPECT_EQ(wrong.finding, "the bridge looks at /t/default, where no server is; there is one at /t/work");
  EXPECT_EQ(
      wrong.nextStep,
      "Set \"tmuxSocket\": \"/t/work\" in settings.json, or this path under General in the window's settings, "
      "and restart Velmora; or work in `tmux` without -L and -S.");
}

}  // namespace
}  // namespace velmora
