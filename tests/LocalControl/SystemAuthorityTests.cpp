#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>

#include "LocalControl/SystemAuthority.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class SystemAuthorityTest : public ::testing::Test {
 protected:
  /// What polkit's program is when it ends so.
  std::optional<bool> endsWith(int status) {
    std::ofstream(authority.program) << "#!/bin/sh\necho \"$@\" >" << (directory / "asked").string()
                                     << "\nexit " << status << "\n";
    std::filesystem::permissions(authority.program, std::filesystem::perms::owner_all);
    return allowedByAuthority(42, found, programs, authority);
  }

  TemporaryDirectory directory;
  ChildProcessRunner programs;
  const SystemAuthority authority{.program = directory / "pkcheck", .action = directory / "action"};
  const RunningProcess found{.name = "velmora", .startTicks = 1234};
};

TEST_F(SystemAuthorityTest, AsksForTheProcessWithItsStartAndUser) {
  testing::writeFile(authority.action, "");
  EXPECT_EQ(endsWith(0), true);
  EXPECT_EQ(testing::contentOf(directory / "asked"), "--action-id app.velmora.loosen --process 42,1234," +
                                                         std::to_string(::geteuid()) +
                                                         " --allow-user-interaction\n");
}

TEST_F(SystemAuthorityTest, TakesARefusalAndADismissalForANo) {
  testing::writeFile(authority.action, "");
  EXPECT_EQ(endsWith(1), false);
  EXPECT_EQ(endsWith(3), false);
}

TEST_F(SystemAuthorityTest, SaysNothingWhereItHasNobodyToAskOrFails) {
  testing::writeFile(authority.action, "");
  EXPECT_EQ(endsWith(2), std::nullopt);
  EXPECT_EQ(endsWith(127), std::nullopt);
  EXPECT_EQ(allowedByAuthority(42, std::nullopt, programs, authority), std::nullopt)
      << "the process has ended";
}

TEST_F(SystemAuthorityTest, WaitsForNobodyOnceItIsCancelled) {
  testing::writeFile(authority.action, "");
  EXPECT_EQ(endsWith(0), true);
  programs.cancel();
  testing::writeFile(authority.program, "#!/bin/sh\nexec sleep 5\n");
  EXPECT_EQ(allowedByAuthority(42, found, programs, authority), std::nullopt);
}

TEST_F(SystemAuthorityTest, SaysNothingWhereItIsNotInstalled) {
  EXPECT_EQ(endsWith(0), std::nullopt) << "polkit does not know the action";
  testing::writeFile(authority.action, "");
  std::filesystem::remove(authority.program);
  EXPECT_EQ(allowedByAuthority(42, found, programs, authority), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(SystemAuthority::installedAction()))
      << "nothing is installed beside a test";
}

}  // namespace
}  // namespace velmora
