#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "LocalControl/UnixSocketEndpoint.h"
#include "tests/LocalControl/SocketTesting.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

constexpr uid_t foreignUser = 65534;

std::optional<UnixSocketError> prepareErrorOf(const fs::path& socket) {
  return errorOf<UnixSocketError>([&] { UnixSocketEndpoint::prepareDirectory(socket); });
}
std::optional<UnixSocketError> removeErrorOf(const fs::path& socket, uid_t user = ::geteuid()) {
  return errorOf<UnixSocketError>([&] { UnixSocketEndpoint::removeStaleSocket(socket, user); });
}

void leaveSocketFile(const fs::path& path) {
  const FileDescriptor socket = SocketPlatform::openStreamSocket();
  const auto address = UnixSocketEndpoint::address(path);
  ASSERT_EQ(
      ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), UnixSocketEndpoint::addressLength),
      0);
}

TEST(UnixSocketEndpoint, PrefersTheUsersOwnTemporaryDirectory) {
  EXPECT_EQ(UnixSocketEndpoint::defaultURL({{"TMPDIR", "/var/tmp"}}, "/run/user/7"),
            "/run/user/7/app.velmora.Velmora/control-v1.sock");
}

TEST(UnixSocketEndpoint, TakesTmpdirNextAndThenTmp) {
  EXPECT_EQ(UnixSocketEndpoint::defaultURL({{"TMPDIR", "/var/tmp"}}, std::nullopt),
            "/var/tmp/app.velmora.Velmora/control-v1.sock");
  EXPECT_EQ(UnixSocketEndpoint::defaultURL({{"TMPDIR", "/var/tmp/"}}, std::nullopt),
            "/var/tmp/app.velmora.Velmora/control-v1.sock");
  EXPECT_EQ(UnixSocketEndpoint::defaultURL({}, std::nullopt), "/tmp/app.velmora.Velmora/control-v1.sock");
}

TEST(UnixSocketEndpoint, PassesOverATmpdirThatIsNotAbsolute) {
  for (const char* value : {"", "tmp", "./tmp"}) {
    EXPECT_EQ(UnixSocketEndpoint::defaultURL({{"TMPDIR", value}}, std::nullopt),
              "/tmp/app.velmora.Velmora/control-v1.sock");
  }
}

TEST(UnixSocketEndpoint, NamesEveryPlaceOfTheRuleOnceAndTheDefaultFirst) {
  const auto at = [](const fs::path& base) { return base / "app.velmora.Velmora/control-v1.sock"; };
  using Places = std::vector<fs::path>;
  EXPECT_EQ(UnixSocketEndpoint::places({{"TMPDIR", "/var/tmp"}}, "/run/user/7"),
            (Places{at("/run/user/7"), at("/var/tmp"), at("/tmp")}));
  EXPECT_EQ(UnixSocketEndpoint::places({{"TMPDIR", "/tmp"}}, std::nullopt), Places{at("/tmp")});
  EXPECT_EQ(UnixSocketEndpoint::places({{"TMPDIR", "tmp"}}, std::nullopt), Places{at("/tmp")});
}

TEST(UnixSocketEndpoint, PreparesADirectoryWithItsParentsAndMode0700) {
  const TemporaryDirectory temporary;
  const auto socket = temporary / "a" / "b" / "control-v1.sock";
  EXPECT_EQ(prepareErrorOf(socket), std::nullopt);
  EXPECT_EQ(modeOf(socket.parent_path()), 0700u);
}

TEST(UnixSocketEndpoint, TightensTheModeOfADirectoryThatIsThere) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "d");
  fs::permissions(temporary / "d", fs::perms(0755));
  EXPECT_EQ(prepareErrorOf(temporary / "d" / "s"), std::nullopt);
  EXPECT_EQ(modeOf(temporary / "d"), 0700u);
}

TEST(UnixSocketEndpoint, RefusesALinkInPlaceOfTheDirectoryAndLeavesItsTargetAlone) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "target");
  fs::permissions(temporary / "target", fs::perms(0755));
  fs::create_directory_symlink(temporary / "target", temporary / UnixSocketEndpoint::directoryName);
  const auto socket = UnixSocketEndpoint::defaultURL({{"TMPDIR", temporary.path().native()}}, std::nullopt);
  EXPECT_EQ(prepareErrorOf(socket), UnixSocketError::unsafeEndpoint());
  EXPECT_EQ(modeOf(temporary / "target"), 0755u);
  EXPECT_TRUE(fs::is_symlink(socket.parent_path()));
}

TEST(UnixSocketEndpoint, RefusesADanglingLinkInPlaceOfTheDirectory) {
  const TemporaryDirectory temporary;
  fs::create_symlink(temporary / "nowhere", temporary / "d");
  EXPECT_EQ(prepareErrorOf(temporary / "d" / "s"), UnixSocketError::unsafeEndpoint());
  EXPECT_FALSE(fs::exists(temporary / "nowhere"));
}

TEST(UnixSocketEndpoint, RefusesAFileInPlaceOfTheDirectory) {
  const TemporaryDirectory temporary;
  std::ofstream(temporary / "d") << "kept";
  EXPECT_EQ(prepareErrorOf(temporary / "d" / "s"), UnixSocketError::unsafeEndpoint());
  EXPECT_EQ(contentsOf(temporary / "d"), "kept");
}

// Only root can give a directory away; for anyone else the root directory is a foreign one.
TEST(UnixSocketEndpoint, RefusesADirectoryOfAnotherUserAndLeavesItAlone) {
  const TemporaryDirectory temporary;
  fs::path directory = "/";
  if (::geteuid() == 0) {
    directory = temporary / UnixSocketEndpoint::directoryName;
    fs::create_directory(directory);
    fs::permissions(directory, fs::perms(0755));
    ASSERT_EQ(::chown(directory.c_str(), foreignUser, foreignUser), 0);
  }
  const auto mode = modeOf(directory);
  EXPECT_EQ(prepareErrorOf(directory / "control-v1.sock"), UnixSocketError::unsafeEndpoint());
  EXPECT_EQ(modeOf(directory), mode);
}

TEST(UnixSocketEndpoint, PassesAFailureToCreateTheDirectoryOn) {
  const TemporaryDirectory temporary;
  std::ofstream(temporary / "file") << "x";
  EXPECT_THROW(UnixSocketEndpoint::prepareDirectory(temporary / "file" / "d" / "s"), fs::filesystem_error);
  EXPECT_THROW(UnixSocketEndpoint::prepareDirectory(temporary / std::string(300, 'x') / "s"),
               fs::filesystem_error);
}

TEST(UnixSocketEndpoint, HasNothingToRemoveWhereNothingStands) {
  const TemporaryDirectory temporary;
  EXPECT_EQ(removeErrorOf(temporary / "s"), std::nullopt);
}

TEST(UnixSocketEndpoint, RemovesAStaleSocketOfTheUser) {
  const TemporaryDirectory temporary;
  leaveSocketFile(temporary / "s");
  EXPECT_EQ(removeErrorOf(temporary / "s"), std::nullopt);
  EXPECT_FALSE(fs::exists(temporary / "s"));
}

TEST(UnixSocketEndpoint, LeavesASocketOfAnotherUserAlone) {
  const TemporaryDirectory temporary;
  leaveSocketFile(temporary / "s");
  EXPECT_EQ(removeErrorOf(temporary / "s", ::geteuid() + 1), UnixSocketError::unsafeEndpoint());
  EXPECT_TRUE(fs::is_socket(temporary / "s"));
}

TEST(UnixSocketEndpoint, LeavesWhatIsNoSocketAlone) {
  const TemporaryDirectory temporary;
  std::ofstream(temporary / "file") << "kept";
  fs::create_directory(temporary / "directory");
  leaveSocketFile(temporary / "s");
  fs::create_symlink(temporary / "s", temporary / "link");
  for (const char* name : {"file", "directory", "link"}) {
    EXPECT_EQ(removeErrorOf(temporary / name), UnixSocketError::unsafeEndpoint()) << name;
  }
  EXPECT_EQ(contentsOf(temporary / "file"), "kept");
  EXPECT_TRUE(fs::is_directory(temporary / "directory"));
  EXPECT_TRUE(fs::is_symlink(temporary / "link"));
  EXPECT_TRUE(fs::is_socket(temporary / "s"));
}

TEST(UnixSocketEndpoint, TellsAnothersFileFromTheUsersOwnAndFromNone) {
  const TemporaryDirectory temporary;
  EXPECT_FALSE(UnixSocketEndpoint::isOfAnother(temporary / "s", ::geteuid()));
  leaveSocketFile(temporary / "s");
  EXPECT_FALSE(UnixSocketEndpoint::isOfAnother(temporary / "s", ::geteuid()));
  EXPECT_TRUE(UnixSocketEndpoint::isOfAnother(temporary / "s", ::geteuid() + 1));
}

TEST(UnixSocketEndpoint, ReportsAFailingLstat) {
  const TemporaryDirectory temporary;
  std::ofstream(temporary / "file") << "x";
  EXPECT_EQ(removeErrorOf(temporary / "file" / "s"), UnixSocketError::system("lstat", ENOTDIR));
}

TEST(UnixSocketEndpoint, AddressesPathsOfUpTo103Bytes) {
  const fs::path longest("/" + std::string(102, 'x'));
  EXPECT_EQ(UnixSocketEndpoint::address(longest).sun_path, longest.native());
  for (const auto& path : {fs::path("/" + std::string(103, 'x')), fs::path()}) {
    EXPECT_EQ(errorOf<UnixSocketError>([&] { UnixSocketEndpoint::address(path); }),
              UnixSocketError::unsafeEndpoint());
  }
}

TEST(UnixSocketEndpoint, CountsThePathInBytesOfUtf8) {
  std::string text = "/";
  for (int i = 0; i < 34; ++i) text += "한";  // 1 + 34 * 3 = 103 bytes
  EXPECT_NO_THROW(UnixSocketEndpoint::address(text));
  EXPECT_EQ(errorOf<UnixSocketError>([&] { UnixSocketEndpoint::address(text + "x"); }),
            UnixSocketError::unsafeEndpoint());
}

}  // namespace
}  // namespace velmora
