#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>

#include "LocalControl/UnixSocketClient.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "LocalControl/UnixSocketServer.h"
#include "System/SocketPlatform.h"
#include "tests/LocalControl/OtherUser.h"
#include "tests/LocalControl/SocketTesting.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

std::optional<UnixSocketError> startErrorAt(const fs::path& path) {
  return errorOf<UnixSocketError>([&] { const UnixSocketServer server(path); });
}

// A path of exactly `bytes` bytes in its own directory.
fs::path pathOfLength(const TemporaryDirectory& temporary, std::size_t bytes) {
  const auto directory = temporary / "d";
  return directory / std::string(bytes - directory.native().size() - 1, 's');
}

TEST(UnixSocketServer, GivesTheDirectoryMode0700AndTheSocket0600) {
  const TemporaryDirectory temporary;
  const UnixSocketServer server(temporary / "d" / "s");
  EXPECT_EQ(modeOf(temporary / "d"), 0700u);
  EXPECT_EQ(modeOf(temporary / "d" / "s"), 0600u);
  EXPECT_EQ(server.socketURL(), temporary / "d" / "s");
}

TEST(UnixSocketServer, BindsAPathOf103BytesAndNotOf104) {
  const TemporaryDirectory temporary;
  const auto longest = pathOfLength(temporary, 103);
  {
    UnixSocketServer server(longest);
    EXPECT_TRUE(fs::is_socket(longest));
    const auto client = UnixSocketClient::connect(longest);
    server.acceptConnection();
  }
  const auto tooLong = pathOfLength(temporary, 104);
  EXPECT_EQ(startErrorAt(tooLong), UnixSocketError::unsafeEndpoint());
  EXPECT_TRUE(fs::is_empty(temporary / "d"));
}

TEST(UnixSocketServer, LeavesWhatIsNoSocketInPlaceAndDoesNotStart) {
  const TemporaryDirectory temporary;
  std::ofstream(temporary / "file") << "kept";
  fs::create_symlink(temporary / "elsewhere", temporary / "link");
  EXPECT_EQ(startErrorAt(temporary / "file"), UnixSocketError::unsafeEndpoint());
  EXPECT_EQ(startErrorAt(temporary / "link"), UnixSocketError::unsafeEndpoint());
  EXPECT_EQ(contentsOf(temporary / "file"), "kept");
  EXPECT_TRUE(fs::is_symlink(temporary / "link"));
  EXPECT_FALSE(fs::exists(temporary / "elsewhere"));
}

// Only root can give a file away; anyone else's refusal is proved with removeStaleSocket and another uid.
TEST(UnixSocketServer, LeavesASocketOfAnotherUserInPlaceAndDoesNotStart) {
  const TemporaryDirectory temporary;
  const auto path = temporary / "s";
  const FileDescriptor stale = SocketPlatform::openStreamSocket();
  const auto address = UnixSocketEndpoint::address(path);
  ASSERT_EQ(
      ::bind(stale.get(), reinterpret_cast<const sockaddr*>(&address), UnixSocketEndpoint::addressLength), 0);
  if (::geteuid() == 0) {
    ASSERT_EQ(::lchown(path.c_str(), otherUser, otherUser), 0);
    EXPECT_EQ(startErrorAt(path), UnixSocketError::unsafeEndpoint());
  } else {
    EXPECT_EQ(errorOf<UnixSocketError>([&] { UnixSocketEndpoint::removeStaleSocket(path, ::geteuid() + 1); }),
              UnixSocketError::unsafeEndpoint());
  }
  EXPECT_TRUE(fs::is_socket(path));
}

TEST(UnixSocketServer, RefusesALinkInPlaceOfItsDirectory) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "target");
  fs::create_directory_symlink(temporary / "target", temporary / "d");
  EXPECT_EQ(startErrorAt(temporary / "d" / "s"), UnixSocketError::unsafeEndpoint());
  EXPECT_TRUE(fs::is_empty(temporary / "target"));
}

TEST(UnixSocketServer, ReplacesAStaleSocket) {
  const TemporaryDirectory temporary;
  const auto path = temporary / "s";
  {
    const FileDescriptor stale = SocketPlatform::openStreamSocket();
    const auto address = UnixSocketEndpoint::address(path);
    ASSERT_EQ(
        ::bind(stale.get(), reinterpret_cast<const sockaddr*>(&address), UnixSocketEndpoint::addressLength),
        0);
  }
  ASSERT_TRUE(fs::is_socket(path));
  UnixSocketServer server(path);
  const auto client = UnixSocketClient::connect(path);
  EXPECT_GE(server.acceptConnection().descriptor(), 0);
}

TEST(UnixSocketServer, RemovesItsSocketWhenDestroyed) {
  const TemporaryDirectory temporary;
  { const UnixSocketServer server(temporary / "s"); }
  EXPECT_FALSE(fs::exists(temporary / "s"));
}

TEST(UnixSocketServer, LeavesAnotherServersSocketAtItsPathWhenDestroyed) {
  const TemporaryDirectory temporary;
  std::optional<UnixSocketServer> first(std::in_place, temporary / "s");
  UnixSocketServer second(temporary / "s");
  first.reset();
  EXPECT_TRUE(fs::is_socket(temporary / "s"));
  const auto client = UnixSocketClient::connect(temporary / "s");
  EXPECT_GE(second.acceptConnection().descriptor(), 0);
}

TEST(UnixSocketServer, LeavesAFileThatReplacedItsSocketWhenDestroyed) {
  const TemporaryDirectory temporary;
  {
    const UnixSocketServer server(temporary / "s");
    fs::remove(temporary / "s");
    std::ofstream(temporary / "s") << "kept";
  }
  EXPECT_EQ(contentsOf(temporary / "s"), "kept");
}

TEST(UnixSocketServer, ReportsAFailingAccept) {
  const TemporaryDirectory temporary;
  UnixSocketServer server(temporary / "s");
  const auto client = UnixSocketClient::connect(temporary / "s");
  const NoMoreDescriptors limit;
  EXPECT_EQ(errorOf<UnixSocketError>([&] { server.acceptConnection(); }),
            UnixSocketError::system("accept", EMFILE));
}

TEST(UnixSocketServer, SaysWhyItCannotOpenItsDirectory) {
  const TemporaryDirectory temporary;
  fs::create_directory(temporary / "d");
  const NoMoreDescriptors limit;
  EXPECT_EQ(startErrorAt(temporary / "d" / "s"), UnixSocketError::system("open", EMFILE));
}

TEST(UnixSocketServer, AcceptsOnlyWhatWaitsWhenItMustNotBlock) {
  const TemporaryDirectory temporary;
  UnixSocketServer server(temporary / "s");
  EXPECT_FALSE(server.acceptWaiting());
  const auto client = UnixSocketClient::connect(temporary / "s");
  EXPECT_TRUE(server.acceptWaiting());
  EXPECT_FALSE(server.acceptWaiting());
}

TEST(UnixSocketServer, KnowsWhetherClientsStillFindIt) {
  const TemporaryDirectory temporary;
  const auto path = temporary / "d" / "s";
  const UnixSocketServer server(path);
  EXPECT_TRUE(server.isInPlace());
  {
    const UnixSocketServer later(path);
    EXPECT_FALSE(server.isInPlace());
    EXPECT_TRUE(later.isInPlace());
  }
  EXPECT_FALSE(server.isInPlace());
}

TEST(UnixSocketServer, RejectsAPeerOfAnotherUser) {
  const TemporaryDirectory temporary;
  UnixSocketServer server(temporary / "d" / "s");
  if (::geteuid() == 0) {
    openToEveryone(temporary, temporary / "d", temporary / "d" / "s");
    const OtherUser stranger(temporary / "d" / "s");
    EXPECT_EQ(errorOf<UnixSocketError>([&] { server.acceptConnection(); }), UnixSocketError::peerRejected());
    EXPECT_EQ(stranger.outcome(), OtherUser::closedByServer);
  } else {
    const auto client = UnixSocketClient::connect(temporary / "d" / "s");
    const auto accepted = server.acceptConnection();
    EXPECT_EQ(errorOf<UnixSocketError>([&] { accepted.verifyPeer(::geteuid() + 1); }),
              UnixSocketError::peerRejected());
  }
}

}  // namespace
}  // namespace velmora
