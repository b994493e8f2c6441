#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <system_error>
#include <thread>

#include "System/SocketPlatform.h"
#include "VelmoraHelper/Stdio/StdioLoop.h"
#include "tests/VelmoraHelper/FakeApplication.h"

namespace velmora {
namespace {

using testing::FakeApplication;

const std::string pingLine = R"({"jsonrpc":"2.0","id":1,"method":"ping"})";
const std::string pongLine = R"({"jsonrpc":"2.0","id":1,"result":{}})"
                             "\n";
const std::string initializeLine =
    R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2025-11-25"}})"
    "\n";
const std::string callLine =
    R"({"jsonrpc":"2.0","id":2,"method":"tools/call","params":{"name":"terminal_status"}})"
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

void writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), bytes.size());
    ASSERT_GT(count, 0);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

std::string readLine(int descriptor) {
  std::string line;
  for (char byte = 0; ::read(descriptor, &byte, 1) == 1;) {
    line.push_back(byte);
    if (byte == '\n') break;
  }
  return line;
}

// Takes large pieces: a client that takes nothing for long is given up once it has closed its input.
std::string readToEnd(int descriptor) {
  std::string text;
  std::vector<char> buffer(65536);
  for (ssize_t count = 0; (count = ::read(descriptor, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

// The loop in a thread of its own, with a client and an application that the test plays.
class Served {
 public:
  explicit Served(
      std::function<bool()> clientIsGone = [] { return false; }, int flags = 0) {
    ::fcntl(input.server.get(), F_SETFL, flags);
    ::fcntl(output.server.get(), F_SETFL, flags);
    thread_ = std::thread([this, clientIsGone = std::move(clientIsGone)] {
      MessageOutput messages(output.server.get());
      BridgeCalls calls([this] { return application.connect(); });
      McpServer server({.version = "1", .clientProcessId = 1}, calls, Uuid::random,
                       [&](const std::string& message) { messages.add(message); });
      try {
        serveLines(input.server.get(), messages, server, calls, clientIsGone);
      } catch (const std::system_error& error) {
        failure = error.what();
      }
      output.server.close();
    });
  }
  ~Served() {
    input.client.close();
    output.client.close();
    end();
  }

  void end() {
    if (thread_.joinable()) thread_.join();
  }

  Pair input;
  Pair output;
  FakeApplication application;
  std::string failure;

 private:
  std::thread thread_;
};

// What the server writes when it is fed the pieces, each with a write of its own, and then the end.
std::string served(const std::vector<std::string>& pieces) {
  Served server;
  std::thread client([&] {
    for (const auto& piece : pieces) writeAll(server.input.client.get(), piece);
    server.input.client.close();
  });
  auto text = readToEnd(server.output.client.get());
  client.join();
  server.end();
  EXPECT_EQ(server.failure, "");
  return text;
}

TEST(StdioLoop, AnswersALineWithALineAndEndsWithTheInput) {
  EXPECT_EQ(served({}), "");
  EXPECT_EQ(served({pingLine + "\n"}), pongLine);
  EXPECT_EQ(served({pingLine + "\r\n\n"}), pongLine);
}

TEST(StdioLoop, AnswersTwoMessagesOfOneWriteInTheirOrder) {
  const std::string second = R"({"jsonrpc":"2.0","id":"b","method":"ping"})";
  EXPECT_EQ(served({pingLine + "\n" + second + "\n"}),
            pongLine + R"({"jsonrpc":"2.0","id":"b","result":{}})" + "\n");
}

TEST(StdioLoop, AnswersTheLastLineThoughItsEndIsMissing) { EXPECT_EQ(served({pingLine}), pongLine); }

TEST(StdioLoop, AnswersTheSameWhereverTheInputIsSplit) {
  const std::string stream = pingLine + "\n" + pingLine + "\r\n";
  for (std::size_t split = 1; split < stream.size(); ++split) {
    ASSERT_EQ(served({stream.substr(0, split), stream.substr(split)}), pongLine + pongLine)
        << "split at " << split;
  }
}

TEST(StdioLoop, RefusesALineThatIsTooLongAndReadsTheNextOne) {
  const std::string huge(maximumMessageBytes + 10, 'x');
  EXPECT_EQ(served({pingLine + "\n", huge, huge, "\n" + pingLine + "\n"}),
            pongLine + R"({"jsonrpc":"2.0","error":{"code":-32600,"message":"The message is too long."}})" +
                "\n" + pongLine);
}

TEST(StdioLoop, ReadsALineOfTheMaximumLength) {
  EXPECT_EQ(served({pingLine + std::string(maximumMessageBytes - pingLine.size(), ' ') + "\n"}), pongLine);
}

TEST(StdioLoop, WritesManyAnswersWholeAlsoToDescriptorsThatDoNotBlock) {
  for (const int flags : {0, O_NONBLOCK}) {
    Served server([] { return false; }, flags);
    std::thread client([&] {
      writeAll(server.input.client.get(), initializeLine);
      for (int i = 0; i < 20; ++i) {
        writeAll(server.input.client.get(), R"({"jsonrpc":"2.0","id":3,"method":"tools/list"})"
                                            "\n");
      }
      server.input.client.close();
    });
    const auto text = readToEnd(server.output.client.get());
    client.join();
    const auto firstLine = text.find('\n') + 1;
    const auto answer = text.substr(firstLine, text.find('\n', firstLine) + 1 - firstLine);
    EXPECT_GT(answer.size(), 10000u);
    std::string expected;
    for (int i = 0; i < 20; ++i) expected += answer;
    EXPECT_TRUE(text.substr(firstLine) == expected) << text.size() << " bytes";
  }
}

TEST(StdioLoop, AnswersPingWhileACallIsUnderWayAndTheCallAfterwards) {
  Served server;
  writeAll(server.input.client.get(), initializeLine + callLine + pingLine + "\n");
  readLine(server.output.client.get());
  EXPECT_EQ(readLine(server.output.client.get()), pongLine);
  FakeApplication::answer(server.application.receiveOne(), {.ok = true});
  EXPECT_NE(readLine(server.output.client.get()).find(R"("id":2,"result")"), std::string::npos);
}

TEST(StdioLoop, FinishesACallThatIsUnderWayWhenTheInputEnds) {
  Served server;
  writeAll(server.input.client.get(), initializeLine + callLine + pingLine + "\n");
  server.input.client.close();
  readLine(server.output.client.get());
  readLine(server.output.client.get());
  FakeApplication::answer(server.application.receiveOne(), {.ok = true});
  EXPECT_NE(readToEnd(server.output.client.get()).find(R"("id":2,"result")"), std::string::npos);
}

TEST(StdioLoop, EndsThoughACallIsNeverAnswered) {
  Served server;
  writeAll(server.input.client.get(), initializeLine + callLine);
  server.input.client.close();
  readLine(server.output.client.get());
  EXPECT_EQ(readToEnd(server.output.client.get()), "");
  server.end();
  EXPECT_EQ(server.failure, "");
}

TEST(StdioLoop, EndsWhenTheInputIsClosedByAClientThatReadsNothing) {
  auto pipe = openPipe();
  const FileDescriptor& input = pipe.read;
  FileDescriptor& client = pipe.write;
  Pair output;
  std::thread serving([&] {
    MessageOutput messages(output.server.get());
    BridgeCalls calls([]() -> UnixSocketConnection { throw UnixSocketError::disconnected(); });
    McpServer server({}, calls, Uuid::random, [&](const std::string& message) { messages.add(message); });
    serveLines(input.get(), messages, server, calls, [] { return false; });
    EXPECT_LT(messages.pending(), 2 * maximumUnreadBytes);
  });
  // So much that neither pipe takes it all.
  ::fcntl(client.get(), F_SETFL, O_NONBLOCK);
  writeAll(client.get(), initializeLine);
  std::string requests;
  for (int i = 0; i < 1000; ++i)
    requests += R"({"jsonrpc":"2.0","id":3,"method":"tools/list"})"
                "\n";
  for (int quiet = 0; quiet < 20;) {
    quiet = ::write(client.get(), requests.data(), requests.size()) > 0 ? 0 : quiet + 1;
    std::this_thread::yield();
  }
  client.close();
  serving.join();
}

TEST(StdioLoop, EndsWhenTheClientHasGoneThoughTheInputStaysOpen) {
  Served server([] { return true; });
  EXPECT_EQ(readToEnd(server.output.client.get()), "");
  server.end();
  EXPECT_EQ(server.failure, "");
}

TEST(StdioLoop, FailsWhenTheOutputIsClosedAlsoWithNothingToWrite) {
  std::signal(SIGPIPE, SIG_IGN);
  Served server;
  server.output.client.close();
  server.end();
  EXPECT_EQ(server.failure, "write: Broken pipe");
}

TEST(StdioLoop, FailsWhenTheInputCannotBeRead) {
  MessageOutput messages(-1);
  BridgeCalls calls([]() -> UnixSocketConnection { throw UnixSocketError::disconnected(); });
  McpServer server({}, calls, Uuid::random, [](const std::string&) {});
  const FileDescriptor directory(::open("/", O_RDONLY));
  EXPECT_THROW(serveLines(directory.get(), messages, server, calls, [] { return false; }), std::system_error);
}

}  // namespace
}  // namespace velmora
