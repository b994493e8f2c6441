#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <system_error>
#include <thread>

#include "LocalControl/FileDescriptor.h"
#include "VelmoraHelper/StdioLoop.h"

namespace velmora {
namespace {

const std::string ping = R"({"jsonrpc":"2.0","id":1,"method":"ping"})";
const std::string pong = R"({"jsonrpc":"2.0","id":1,"result":{}})"
                         "\n";

// Two connected descriptors, the client's and the server's.
struct Pair {
  Pair() {
    int both[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, both) != 0)
      throw std::system_error(errno, std::generic_category());
    client = FileDescriptor(both[0]);
    server = FileDescriptor(both[1]);
  }
  FileDescriptor client;
  FileDescriptor server;
};

McpServer makeServer() {
  const auto bridge = [](const LocalControlRequest& request) -> LocalControlResponse {
    return {
        .requestId = request.requestId, .ok = true, .data = JSONObject{{"text", std::string(900000, 'x')}}};
  };
  return McpServer({.version = "1", .clientProcessId = 1}, ToolCaller(bridge, [] { return Uuid{}; }));
}

void writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), bytes.size());
    ASSERT_GT(count, 0);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

std::string readToEnd(int descriptor) {
  std::string text;
  char buffer[65536];
  for (ssize_t count = 0; (count = ::read(descriptor, buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<std::size_t>(count));
  }
  return text;
}

// What the server writes when it is fed the pieces, each with a write of its own, and then the end.
std::string served(const std::vector<std::string>& pieces, int flags = 0) {
  Pair input;
  Pair output;
  ::fcntl(input.server.get(), F_SETFL, flags);
  ::fcntl(output.server.get(), F_SETFL, flags);
  std::thread client([&] {
    for (const auto& piece : pieces) writeAll(input.client.get(), piece);
    input.client.close();
  });
  std::thread serving([&] {
    auto server = makeServer();
    serveLines(input.server.get(), output.server.get(), server);
    output.server.close();
  });
  auto text = readToEnd(output.client.get());
  client.join();
  serving.join();
  return text;
}

TEST(StdioLoop, AnswersALineWithALineAndEndsWithTheInput) {
  EXPECT_EQ(served({}), "");
  EXPECT_EQ(served({ping + "\n"}), pong);
  EXPECT_EQ(served({ping + "\r\n\n"}), pong);
}

TEST(StdioLoop, AnswersTwoMessagesOfOneWriteInTheirOrder) {
  const std::string second = R"({"jsonrpc":"2.0","id":"b","method":"ping"})";
  EXPECT_EQ(served({ping + "\n" + second + "\n"}), pong + R"({"jsonrpc":"2.0","id":"b","result":{}})" + "\n");
}

TEST(StdioLoop, AnswersTheLastLineThoughItsEndIsMissing) { EXPECT_EQ(served({ping}), pong); }

TEST(StdioLoop, AnswersTheSameWhereverTheInputIsSplit) {
  const std::string stream = ping + "\n" + ping + "\r\n";
  for (std::size_t split = 1; split < stream.size(); ++split) {
    ASSERT_EQ(served({stream.substr(0, split), stream.substr(split)}), pong + pong) << "split at " << split;
  }
}

TEST(StdioLoop, RefusesALineThatIsTooLongAndReadsTheNextOne) {
  const std::string huge(maximumMessageBytes + 10, 'x');
  EXPECT_EQ(served({ping + "\n", huge, huge, "\n" + ping + "\n"}),
            pong + McpServer::answerToTooLongLine() + "\n" + pong);
}

TEST(StdioLoop, ReadsALineOfTheMaximumLength) {
  EXPECT_EQ(served({ping + std::string(maximumMessageBytes - ping.size(), ' ') + "\n"}), pong);
}

TEST(StdioLoop, WritesALargeAnswerWholeAlsoToANonBlockingDescriptor) {
  const std::string call =
      R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"terminal_status"}})"
      "\n";
  const auto blocking = served({call, ping + "\n"});
  EXPECT_GT(blocking.size(), 1800000u);
  EXPECT_TRUE(blocking.ends_with("\n" + pong));
  EXPECT_EQ(served({call, ping + "\n"}, O_NONBLOCK), blocking);
}

TEST(StdioLoop, FailsWhenTheOutputIsClosed) {
  std::signal(SIGPIPE, SIG_IGN);
  Pair input;
  Pair output;
  output.client.close();
  writeAll(input.client.get(), ping + "\n");
  auto server = makeServer();
  EXPECT_THROW(serveLines(input.server.get(), output.server.get(), server), std::system_error);
}

TEST(StdioLoop, FailsWhenTheInputCannotBeRead) {
  auto server = makeServer();
  EXPECT_THROW(serveLines(-1, -1, server), std::system_error);
}

}  // namespace
}  // namespace velmora
