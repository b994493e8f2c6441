#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "System/PrivateFolder.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::modeOf;

TEST(PrivateFolder, CountsOnlyAnAbsoluteRealDirectoryOfTheUserAsItsOwn) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "real");
  fs::create_directory_symlink(temporary / "real", temporary / "link");
  testing::writeFile(temporary / "file", "x");
  EXPECT_TRUE(isOwnDirectory(temporary / "real"));
  EXPECT_TRUE(isOwnDirectory(temporary / "real/"));
  EXPECT_FALSE(isOwnDirectory(temporary / "link"));
  EXPECT_FALSE(isOwnDirectory(temporary / "link/"));
  EXPECT_FALSE(isOwnDirectory(temporary / "file"));
  EXPECT_FALSE(isOwnDirectory(temporary / "missing"));
  EXPECT_FALSE(isOwnDirectory(fs::relative(temporary / "real")));
  EXPECT_FALSE(isOwnDirectory(""));
}

TEST(PrivateFolder, IsMadeWithItsParentsForTheUserAlone) {
  const TemporaryDirectory temporary;
  const auto folder = openPrivateFolder(temporary / "a" / "b");
  EXPECT_EQ(modeOf(temporary / "a" / "b"), 0700u);
  EXPECT_EQ(::fcntl(folder.get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(PrivateFolder, IsClosedToOthersWhenItStoodOpen) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "open");
  ::chmod((temporary / "open").c_str(), 0777);
  openPrivateFolder(temporary / "open");
  EXPECT_EQ(modeOf(temporary / "open"), 0700u);
}

// For root there are no modes: a process of its own becomes another user for it.
TEST(PrivateFolder, IsMendedWhenNotEvenItsOwnerMayOpenIt) {
  const TemporaryDirectory temporary;
  fs::permissions(temporary.path(), fs::perms::all);
  const pid_t process = ::fork();
  if (process == 0) {
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(2);
    try {
      ::umask(0777);
      openPrivateFolder(temporary / "made");
      for (const mode_t mode : {0000u, 0300u}) {
        ::chmod((temporary / "made").c_str(), mode);
        openPrivateFolder(temporary / "made");
      }
      ::_exit(0);
    } catch (const std::exception&) {
      ::_exit(1);
    }
  }
  int status = -1;
  ASSERT_EQ(::waitpid(process, &status, 0), process);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(modeOf(temporary / "made"), 0700u);
}

TEST(PrivateFolder, TellsThatItCannotBeOpenedFromAForeignOne) {
  const TemporaryDirectory temporary;
  struct rlimit before {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  auto none = before;
  none.rlim_cur = 0;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  EXPECT_THROW(openPrivateFolder(temporary / "folder"), UnopenableFolder);
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
}

TEST(PrivateFolder, RefusesALinkAndAFile) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "real");
  fs::create_directory_symlink(temporary / "real", temporary / "link");
  testing::writeFile(temporary / "file", "x");
  EXPECT_THROW(openPrivateFolder(temporary / "link"), ForeignFolder);
  EXPECT_THROW(openPrivateFolder(temporary / "file"), ForeignFolder);
}

TEST(PrivateFolder, IsOpenedAlsoWhenItsModeKeepsItsOwnUserOut) {
  const TemporaryDirectory temporary;
  // To root nothing is closed.
  const uid_t user = ::geteuid() == 0 ? 65534 : ::geteuid();
  const gid_t group = ::geteuid() == 0 ? 65534 : ::getegid();
  ASSERT_EQ(::chmod(temporary.path().c_str(), 0755), 0);
  for (const mode_t mode : {0000u, 0300u, 0077u}) {
    const auto folder = temporary / std::to_string(mode);
    fs::create_directory(folder);
    ASSERT_EQ(::chown(folder.c_str(), user, group), 0);
    ASSERT_EQ(::chmod(folder.c_str(), mode), 0);
    const pid_t process = ::fork();
    if (process == 0) {
      if (::setgid(group) != 0 || ::setuid(user) != 0) ::_exit(2);
      try {
        ::_exit(openPrivateFolder(folder) ? 0 : 1);
      } catch (const std::system_error&) {
        ::_exit(1);
      }
    }
    int status = 0;
    ASSERT_EQ(::waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0) << mode;
    EXPECT_EQ(modeOf(folder), 0700u) << mode;
  }
}

TEST(PrivateFolder, IsNotCalledAnothersWhenNoDescriptorIsLeft) {
  const TemporaryDirectory temporary;
  struct rlimit before {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const struct rlimit none { .rlim_cur = 0, .rlim_max = before.rlim_max };
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  std::error_code code;
  try {
    openPrivateFolder(temporary / "folder");
  } catch (const std::system_error& error) {
    code = error.code();
  }
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(code, std::errc::too_many_files_open);
}

TEST(PrivateFolder, SaysWhyItCannotBeMade) {
  const TemporaryDirectory temporary;
  testing::writeFile(temporary / "file", "x");
  EXPECT_THROW(openPrivateFolder(temporary / "file" / "below"), fs::filesystem_error);
}

}  // namespace
}  // namespace velmora
