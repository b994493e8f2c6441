#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <system_error>

#include "System/SocketPlatform.h"
#include "VelmoraHelper/Stdio/MessageOutput.h"

namespace velmora {
namespace {

std::string readWhatIsThere(int descriptor) {
  ::fcntl(descriptor, F_SETFL, O_NONBLOCK);
  std::string text;
  std::array<char, 65536> buffer{};
  for (ssize_t count = 0; (count = ::read(descriptor, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

Pipe openSocketPair() {
  int ends[2] = {-1, -1};
  EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

// Both kinds of descriptor that clients give their servers.
class MessageOutputTest : public ::testing::TestWithParam<Pipe (*)()> {};
INSTANTIATE_TEST_SUITE_P(Pipe, MessageOutputTest, ::testing::Values(&openPipe));
INSTANTIATE_TEST_SUITE_P(Socket, MessageOutputTest, ::testing::Values(&openSocketPair));

TEST_P(MessageOutputTest, WritesEachMessageAsALine) {
  const auto [client, server] = GetParam()();
  MessageOutput output(server.get());
  output.add("one");
  output.add("");
  EXPECT_EQ(output.pending(), 5u);
  output.flush();
  EXPECT_EQ(output.pending(), 0u);
  EXPECT_EQ(readWhatIsThere(client.get()), "one\n\n");
}

TEST_P(MessageOutputTest, NeverWaitsForAClientThatDoesNotReadAndLosesNothing) {
  const auto [client, server] = GetParam()();
  MessageOutput output(server.get());
  std::string message;
  for (int i = 0; i < 100000; ++i) message += std::to_string(i) + " ";
  std::string received;
  output.add(message);
  output.flush();
  EXPECT_GT(output.pending(), 0u);
  while (output.pending() > 0) {
    received += readWhatIsThere(client.get());
    output.flush();
  }
  received += readWhatIsThere(client.get());
  EXPECT_EQ(received, message + "\n");
  EXPECT_EQ(::fcntl(server.get(), F_GETFL) & O_NONBLOCK, 0);
}

TEST_P(MessageOutputTest, FailsWhenTheClientHasGone) {
  std::signal(SIGPIPE, SIG_IGN);
  auto [client, server] = GetParam()();
  MessageOutput output(server.get());
  client.close();
  output.add("x");
  EXPECT_THROW(output.flush(), std::system_error);
}

}  // namespace
}  // namespace velmora
