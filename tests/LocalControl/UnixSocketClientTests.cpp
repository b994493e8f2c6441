#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "LocalControl/UnixSocketClient.h"
#include "LocalControl/UnixSocketServer.h"
#include "System/SocketPlatform.h"
#include "tests/LocalControl/OtherUser.h"
#include "tests/LocalControl/SocketTesting.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

std::optional<UnixSocketError> connectErrorTo(const std::filesystem::path& path) {
  return errorOf<UnixSocketError>([&] { UnixSocketClient::connect(path); });
}

TEST(UnixSocketClient, TalksToTheServer) {
  const TemporaryDirectory temporary;
  UnixSocketServer server(temporary / "s");
  auto client = UnixSocketClient::connect(temporary / "s");
  auto accepted = server.acceptConnection();
  client.writeFrame(std::string("\0\0\0\1x", 5));
  EXPECT_EQ(accepted.readFrame(), std::string("\0\0\0\1x", 5));
}

TEST(UnixSocketClient, ReportsThatNothingListens) {
  const TemporaryDirectory temporary;
  EXPECT_EQ(connectErrorTo(temporary / "missing"), UnixSocketError::system("connect", ENOENT));
  std::ofstream(temporary / "file") << "x";
  EXPECT_EQ(connectErrorTo(temporary / "file"), UnixSocketError::system("connect", ECONNREFUSED));
}

TEST(UnixSocketClient, RefusesAPathThatDoesNotFit) {
  EXPECT_EQ(connectErrorTo("/" + std::string(103, 'x')), UnixSocketError::unsafeEndpoint());
  EXPECT_EQ(connectErrorTo("/" + std::string(102, 'x')), UnixSocketError::system("connect", ENOENT));
  EXPECT_EQ(connectErrorTo(""), UnixSocketError::unsafeEndpoint());
}

TEST(UnixSocketClient, AsksForItsSocketBeforeItLooksAtThePath) {
  const std::filesystem::path tooLong("/" + std::string(103, 'x'));
  const NoMoreDescriptors limit;
  EXPECT_EQ(connectErrorTo(tooLong), UnixSocketError::system("socket", EMFILE));
}

// Only root can run a server as another user; anyone else sees the same check with another uid expected.
TEST(UnixSocketClient, RefusesAServerOfAnotherUser) {
  const TemporaryDirectory temporary;
  UnixSocketServer server(temporary / "s");
  if (::geteuid() != 0) {
    const auto client = UnixSocketClient::connect(temporary / "s");
    EXPECT_EQ(errorOf<UnixSocketError>([&] { client.verifyPeer(::geteuid() + 1); }),
              UnixSocketError::peerRejected());
    return;
  }
  openToEveryone(temporary, temporary.path(), temporary / "s");
  const auto path = temporary / "s";
  const pid_t process = ::fork();
  if (process == 0) {
    if (::setgid(otherUser) != 0 || ::setuid(otherUser) != 0) ::_exit(2);
    ::_exit(connectErrorTo(path) == UnixSocketError::peerRejected() ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(process, &status, 0), process);
  EXPECT_EQ(status, 0);
}

TEST(UnixSocketClient, KnowsWithoutWaitingWhetherSomebodyListens) {
  const TemporaryDirectory temporary;
  const auto path = temporary / "s";
  EXPECT_FALSE(UnixSocketClient::isAnswering(path));
  std::vector<UnixSocketConnection> waiting;
  {
    const UnixSocketServer stopped(path);  // it accepts none of them
    try {
      while (true) waiting.push_back(UnixSocketClient::connectWithoutBlocking(path));
    } catch (const UnixSocketError& full) {
      ASSERT_EQ(full.operation(), "connect");
      EXPECT_EQ(UnixSocketClient::isAnswering(path),
                SocketPlatform::listenerQueue(full.code()) == SocketPlatform::ListenerQueue::full);
    }
  }
  EXPECT_FALSE(UnixSocketClient::isAnswering(path));
}

// A connect would end the other server's accepting for good. Only root can make such a file; for anyone else
// UnixSocketEndpoint::isOfAnother is all there is to see.
TEST(UnixSocketClient, DoesNotEvenConnectToASocketOfAnotherUser) {
  const TemporaryDirectory temporary;
  UnixSocketServer server(temporary / "s");
  const bool isAnothers = ::geteuid() == 0 && ::lchown((temporary / "s").c_str(), otherUser, otherUser) == 0;
  EXPECT_EQ(connectErrorTo(temporary / "s") == UnixSocketError::peerRejected(), isAnothers);
  EXPECT_EQ(server.acceptWaiting().has_value(), !isAnothers);
}

TEST(UnixSocketClient, LeavesNoDescriptorOpenAfterAFailure) {
  const TemporaryDirectory temporary;
  const FileDescriptor before(::dup(0));
  const int free = before.get() + 1;
  connectErrorTo(temporary / "missing");
  connectErrorTo("");
  const FileDescriptor after(::dup(0));
  EXPECT_EQ(after.get(), free);
}

}  // namespace
}  // namespace velmora
