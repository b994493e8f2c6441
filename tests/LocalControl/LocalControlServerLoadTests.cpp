// The server under many connections: nothing is lost and nothing is left over.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <thread>
#include <vector>

#include "LocalControl/LocalControlClient.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/LocalControlServer.h"
#include "LocalControl/UnixSocketClient.h"
#include "tests/LocalControl/SocketTesting.h"
#include "tests/support/RecordHandler.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

std::ptrdiff_t entriesOf(const fs::path& directory) {
  return std::distance(fs::directory_iterator(directory), fs::directory_iterator());
}
std::ptrdiff_t descriptorCount() { return entriesOf("/proc/self/fd"); }
std::ptrdiff_t threadCount() { return entriesOf("/proc/self/task"); }

// The size of the address space, in which a finished thread keeps its stack until it is joined.
std::int64_t mappedBytes() {
  std::int64_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * ::sysconf(_SC_PAGESIZE);
}

LocalControlResponse echoed(const LocalControlRequest& request) {
  LocalControlResponse response;
  response.requestId = request.requestId;
  response.ok = true;
  response.data = request.arguments;
  return response;
}

TEST(LocalControlServerLoad, LosesNothingOf10000RequestsOn64ConnectionsAndLeavesNothingOver) {
  constexpr int connectionCount = 64;
  constexpr int requestsPerConnection = 157;  // 10,048 in all
  const TemporaryDirectory temporary;
  // The thread sanitizer adds a thread of its own with the first one; have it before the count.
  std::thread([] {}).join();
  const auto descriptorsBefore = descriptorCount();
  const auto threadsBefore = threadCount();
  std::atomic<int> answered = 0;
  std::atomic<int> handled = 0;
  {
    LocalControlServer server(testing::recordHandler([&handled](const LocalControlRequest& request) {
                                ++handled;
                                return echoed(request);
                              }),
                              temporary / "s");
    server.start();
    std::vector<std::thread> helpers;
    for (int helper = 0; helper < connectionCount; ++helper) {
      helpers.emplace_back([&, helper] {
        LocalControlClient client(temporary / "s");
        for (int number = 0; number < requestsPerConnection; ++number) {
          auto request = sampleRequest(std::to_string(helper) + "/" + std::to_string(number));
          request.requestId = Uuid::random();
          if (client.send(request) == echoed(request)) ++answered;
        }
      });
    }
    for (auto& helper : helpers) helper.join();
  }
  EXPECT_EQ(answered, connectionCount * requestsPerConnection);
  EXPECT_EQ(handled, connectionCount * requestsPerConnection);
  EXPECT_EQ(descriptorCount(), descriptorsBefore);
  // A joined thread may stand in the list for a moment longer.
  yieldUntil([&] { return threadCount() == threadsBefore; });
}

TEST(LocalControlServerLoad, DoesNotGrowOver10000ShortConnections) {
  const TemporaryDirectory temporary;
  LocalControlServer server(testing::recordHandler(echoed), temporary / "s");
  server.start();
  const auto frame = LocalControlCodec::frame(sampleRequest());
  const auto answer = LocalControlCodec::frame(echoed(sampleRequest()));
  const auto exchange = [&] {
    auto connection = UnixSocketClient::connect(temporary / "s");
    connection.writeFrame(frame);
    if (connection.readFrame() != answer) return false;
    // Once the end comes back, the server has closed its descriptor and joined the thread before this one.
    ::shutdown(connection.descriptor(), SHUT_WR);
    return errorOf<UnixSocketError>([&] { connection.readFrame(); }) == UnixSocketError::disconnected();
  };
  ASSERT_TRUE(exchange());
  const auto descriptorsBefore = descriptorCount();
  const auto bytesBefore = mappedBytes();
  for (int i = 0; i < 10'000; ++i) ASSERT_TRUE(exchange()) << i;
  EXPECT_EQ(descriptorCount(), descriptorsBefore);
  // This thread, the accepting one, one that is finishing; the sanitizers have one of their own.
  EXPECT_LE(threadCount(), 4);
  // 10,000 stacks that nobody joined would be tens of gigabytes.
  EXPECT_LT(mappedBytes() - bytesBefore, std::int64_t{1} << 30);
}

TEST(LocalControlServerLoad, EndsWith64ReadersBlocked) {
  const TemporaryDirectory temporary;
  std::vector<UnixSocketConnection> connections;
  {
    LocalControlServer server(testing::recordHandler(echoed), temporary / "s");
    server.start();
    for (int i = 0; i < 64; ++i) connections.push_back(UnixSocketClient::connect(temporary / "s"));
  }
  for (auto& connection : connections) {
    EXPECT_EQ(errorOf<UnixSocketError>([&] { connection.readFrame(); }), UnixSocketError::disconnected());
  }
}

}  // namespace
}  // namespace velmora
