#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketConnection.h"
#include "tests/LocalControl/SocketTesting.h"

namespace velmora {
namespace {

using namespace std::string_literals;

// What readFrame throws when the peer writes `bytes` and leaves.
template <class Error>
std::optional<Error> readErrorAfter(const std::string& bytes) {
  auto [near, far] = connectedPair();
  near.writeFrame(bytes);
  near.interrupt();
  return errorOf<Error>([&end = far] { end.readFrame(); });
}

TEST(UnixSocketConnection, KnowsWhetherThePeerHasLeft) {
  auto [near, far] = connectedPair();
  EXPECT_FALSE(far.peerHasLeft());
  near.writeFrame("unread");
  ::shutdown(near.descriptor(), SHUT_WR);
  EXPECT_FALSE(far.peerHasLeft()) << "it still reads";
  far.endReading();
  EXPECT_FALSE(far.peerHasLeft()) << "this end reads no more";
  { const auto leaving = std::move(near); }
  EXPECT_TRUE(far.peerHasLeft());
}

TEST(UnixSocketConnection, WritesOnAfterItsReadingHasEnded) {
  auto [near, far] = connectedPair();
  const auto frame = LocalControlCodec::frame(sampleRequest());
  std::thread reader([&end = far] { EXPECT_THROW(end.readFrame(), UnixSocketError); });
  far.endReading();
  reader.join();
  far.writeFrame(frame);
  EXPECT_EQ(near.readFrame(), frame);
}

TEST(UnixSocketConnection, ReadsBackTheFrameThatWasWritten) {
  auto [near, far] = connectedPair();
  const auto frame = LocalControlCodec::frame(sampleRequest());
  near.writeFrame(frame);
  EXPECT_EQ(far.readFrame(), frame);
}

TEST(UnixSocketConnection, ReadsAFrameThatArrivesInTwoPiecesSplitAnywhere) {
  const auto frame = LocalControlCodec::frame(sampleRequest());
  for (std::size_t split = 1; split < frame.size(); ++split) {
    auto [near, far] = connectedPair();
    std::string received;
    std::thread reader([&received, &end = far] { received = end.readFrame(); });
    near.writeFrame(std::string_view(frame).substr(0, split));
    // The reader has taken the first piece before the second is written, so it must go on from there.
    yieldUntil([&end = far] { return waitingBytes(end.descriptor()) == 0; });
    near.writeFrame(std::string_view(frame).substr(split));
    reader.join();
    ASSERT_EQ(received, frame) << split;
  }
}

TEST(UnixSocketConnection, ReadsFramesThatArriveOneByteAtATime) {
  auto [near, far] = connectedPair();
  const auto first = LocalControlCodec::frame(sampleRequest());
  const auto second = LocalControlCodec::frame(sampleResponse());
  std::pair<std::string, std::string> received;
  std::thread reader([&received, &end = far] {
    received.first = end.readFrame();
    received.second = end.readFrame();
  });
  for (const char byte : first + second) {
    near.writeFrame({&byte, 1});
    yieldUntil([&end = far] { return waitingBytes(end.descriptor()) == 0; });
  }
  reader.join();
  EXPECT_EQ(received.first, first);
  EXPECT_EQ(received.second, second);
}

TEST(UnixSocketConnection, ReadsFramesThatArriveTogetherOneByOne) {
  auto [near, far] = connectedPair();
  near.writeFrame("\0\0\0\1a"s + "\0\0\0\2bc"s);
  EXPECT_EQ(far.readFrame(), "\0\0\0\1a"s);
  EXPECT_EQ(far.readFrame(), "\0\0\0\2bc"s);
}

TEST(UnixSocketConnection, CarriesAFrameOfTheLargestSize) {
  auto [near, far] = connectedPair();
  const auto frame =
      LocalControlCodec::frameOfPayload(std::string(LocalControlCodec::maximumPayloadSize, 'x'));
  // More than the socket holds: the write goes on where each partial one ended.
  std::thread writer([&frame, &end = near] { end.writeFrame(frame); });
  const auto received = far.readFrame();
  writer.join();
  EXPECT_TRUE(received == frame);
}

TEST(UnixSocketConnection, RefusesALengthOfZeroWithoutReadingFurther) {
  auto [near, far] = connectedPair();
  near.writeFrame("\0\0\0\0rest"s);
  EXPECT_EQ(errorOf<LocalControlCodecError>([&end = far] { end.readFrame(); }),
            LocalControlCodecError::emptyFrame);
  EXPECT_EQ(waitingBytes(far.descriptor()), 4);
}

TEST(UnixSocketConnection, RefusesALengthOverTheLimitWithoutReadingFurther) {
  auto [near, far] = connectedPair();
  near.writeFrame("\0\x10\0\1rest"s);
  EXPECT_EQ(errorOf<LocalControlCodecError>([&end = far] { end.readFrame(); }),
            LocalControlCodecError::frameTooLarge);
  EXPECT_EQ(waitingBytes(far.descriptor()), 4);
}

TEST(UnixSocketConnection, FailsWithDisconnectedWhenThePeerClosesAnywhereInAFrame) {
  const auto frame = LocalControlCodec::frame(sampleResponse());
  for (std::size_t length = 0; length < frame.size(); ++length) {
    EXPECT_EQ(readErrorAfter<UnixSocketError>(frame.substr(0, length)), UnixSocketError::disconnected())
        << length;
  }
}

TEST(UnixSocketConnection, FailsWithDisconnectedWhenARowOfThreeBytesIsAllThatCame) {
  EXPECT_EQ(readErrorAfter<UnixSocketError>("abc"), UnixSocketError::disconnected());
}

TEST(UnixSocketConnection, FailsWithDisconnectedWhenReadingFails) {
  UnixSocketConnection notOpen{FileDescriptor{}};
  EXPECT_EQ(errorOf<UnixSocketError>([&] { notOpen.readFrame(); }), UnixSocketError::disconnected());
}

TEST(UnixSocketConnection, GivesEpipeAndNoSignalWhenThePeerHasClosed) {
  // The signal's own disposition is the default here, which would end this program.
  ASSERT_EQ(::signal(SIGPIPE, SIG_DFL), SIG_DFL);
  std::optional<UnixSocketConnection> near;
  {
    auto [kept, left] = connectedPair();
    near = std::move(kept);
  }
  EXPECT_EQ(errorOf<UnixSocketError>([&] { near->writeFrame("x"); }),
            UnixSocketError::system("write", EPIPE));
}

TEST(UnixSocketConnection, WritesNothingForNoBytes) {
  UnixSocketConnection notOpen{FileDescriptor{}};
  EXPECT_NO_THROW(notOpen.writeFrame(""));
  EXPECT_EQ(errorOf<UnixSocketError>([&] { notOpen.writeFrame("x"); }),
            UnixSocketError::system("write", EBADF));
}

TEST(UnixSocketConnection, AcceptsAPeerOfTheExpectedUserOnly) {
  auto [near, far] = connectedPair();
  EXPECT_NO_THROW(near.verifyPeer(::geteuid()));
  EXPECT_EQ(errorOf<UnixSocketError>([&end = near] { end.verifyPeer(::geteuid() + 1); }),
            UnixSocketError::peerRejected());
}

TEST(UnixSocketConnection, RejectsAPeerWhoseUserCannotBeRead) {
  const UnixSocketConnection noSocket(FileDescriptor(::open("/dev/null", O_RDWR | O_CLOEXEC)));
  EXPECT_EQ(errorOf<UnixSocketError>([&] { noSocket.verifyPeer(::geteuid()); }),
            UnixSocketError::peerRejected());
}

TEST(UnixSocketConnection, WakesABlockedReaderWhenInterrupted) {
  auto [near, far] = connectedPair();
  std::optional<UnixSocketError> error;
  std::thread reader([&error, &end = far] { error = errorOf<UnixSocketError>([&] { end.readFrame(); }); });
  far.interrupt();
  reader.join();
  EXPECT_EQ(error, UnixSocketError::disconnected());
}

TEST(UnixSocketConnection, ClosesItsDescriptorWhenDestroyed) {
  int raw = -1;
  {
    auto [near, far] = connectedPair();
    raw = near.descriptor();
    EXPECT_GE(::fcntl(raw, F_GETFD), 0);
  }
  EXPECT_LT(::fcntl(raw, F_GETFD), 0);
}

}  // namespace
}  // namespace velmora
