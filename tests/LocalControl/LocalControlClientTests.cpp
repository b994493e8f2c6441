#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <thread>
#include <vector>

#include "LocalControl/LocalControlClient.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketServer.h"
#include "tests/LocalControl/SocketTesting.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class LocalControlClientTest : public ::testing::Test {
 protected:
  // Accepts one connection and lets `serve` use it, on a thread that the test joins.
  template <class Serve>
  std::thread serving(Serve serve) {
    return std::thread([this, serve] {
      auto connection = server_.acceptConnection();
      serve(connection);
    });
  }

  TemporaryDirectory temporary_;
  UnixSocketServer server_{temporary_ / "s"};
  LocalControlClient client_{temporary_ / "s"};
};

TEST_F(LocalControlClientTest, SendsTheRequestAndReturnsTheResponse) {
  LocalControlRequest received;
  auto thread = serving([&received](UnixSocketConnection& connection) {
    received = LocalControlCodec::decode<LocalControlRequest>(connection.readFrame());
    connection.writeFrame(LocalControlCodec::frame(sampleResponse()));
  });
  EXPECT_EQ(client_.send(sampleRequest()), sampleResponse());
  thread.join();
  EXPECT_EQ(received, sampleRequest());
}

TEST_F(LocalControlClientTest, KeepsOneConnectionForAllRequests) {
  auto thread = serving([](UnixSocketConnection& connection) {
    for (int i = 0; i < 3; ++i) {
      connection.readFrame();
      connection.writeFrame(LocalControlCodec::frame(sampleResponse()));
    }
  });
  for (int i = 0; i < 3; ++i) EXPECT_EQ(client_.send(sampleRequest()), sampleResponse());
  thread.join();
}

TEST_F(LocalControlClientTest, KeepsItsConnectionAfterAFailure) {
  auto thread = serving([](UnixSocketConnection& connection) {
    connection.readFrame();
    connection.writeFrame(LocalControlCodec::frameOfPayload("{}"));
  });
  EXPECT_THROW(client_.send(sampleRequest()), JsonDecodeError);
  thread.join();
  // The first connection is closed at the other end and nobody accepts a second: a client that connected
  // anew would wait here.
  EXPECT_EQ(errorOf<UnixSocketError>([this] { client_.send(sampleRequest()); }),
            UnixSocketError::system("write", EPIPE));
}

TEST_F(LocalControlClientTest, ConnectsLaterWhenTheFirstAttemptFailed) {
  LocalControlClient early(temporary_ / "later");
  EXPECT_EQ(errorOf<UnixSocketError>([&] { early.send(sampleRequest()); }),
            UnixSocketError::system("connect", ENOENT));
  UnixSocketServer late(temporary_ / "later");
  std::thread thread([&late] {
    auto connection = late.acceptConnection();
    connection.readFrame();
    connection.writeFrame(LocalControlCodec::frame(sampleResponse()));
  });
  EXPECT_EQ(early.send(sampleRequest()), sampleResponse());
  thread.join();
}

TEST_F(LocalControlClientTest, ReportsAServerThatLeavesWithoutAnswer) {
  auto thread = serving([](UnixSocketConnection& connection) { connection.readFrame(); });
  EXPECT_EQ(errorOf<UnixSocketError>([this] { client_.send(sampleRequest()); }),
            UnixSocketError::disconnected());
  thread.join();
}

TEST_F(LocalControlClientTest, RunsOneSendAtATime) {
  constexpr int threadCount = 8;
  auto thread = serving([](UnixSocketConnection& connection) {
    for (int i = 0; i < threadCount; ++i) {
      const auto request = LocalControlCodec::decode<LocalControlRequest>(connection.readFrame());
      // A second request before this one's answer would lie in the socket by now, or soon: answers are
      // matched with their requests below.
      auto response = sampleResponse();
      response.requestId = request.requestId;
      connection.writeFrame(LocalControlCodec::frame(response));
    }
  });
  std::vector<std::thread> senders;
  std::atomic<int> matching = 0;
  for (int i = 0; i < threadCount; ++i) {
    senders.emplace_back([this, &matching] {
      auto request = sampleRequest();
      request.requestId = Uuid::random();
      if (client_.send(request).requestId == request.requestId) ++matching;
    });
  }
  for (auto& sender : senders) sender.join();
  thread.join();
  EXPECT_EQ(matching, threadCount);
}

}  // namespace
}  // namespace velmora
