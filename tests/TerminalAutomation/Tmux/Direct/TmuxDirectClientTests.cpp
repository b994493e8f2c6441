#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <future>
#include <vector>

#include "TerminalAutomation/Tmux/Direct/TmuxDirectClient.h"
#include "tests/TerminalAutomation/Tmux/Direct/FakeTmux.h"
#include "tests/support/Files.h"

namespace velmora {
namespace {

using testing::answering;
using testing::answerOf;
using testing::FakeTmux;
using testing::FakeTmuxClient;
using testing::namesIn;
using End = TmuxAnswer::End;
using Reach = TmuxDirectResult::Reach;
using Type = TmuxMessageType;
using namespace std::chrono_literals;

TmuxInvocation asking(std::chrono::milliseconds time = 20s) {
  return {.arguments = {"list-panes"}, .deadline = std::chrono::steady_clock::now() + time};
}

TmuxDirectResult ask(const std::filesystem::path& socket, const TmuxInvocation& invocation = asking(),
                     pid_t server = ::getpid()) {
  return TmuxDirectClient(socket, "xterm", "/").ask(invocation, server);
}

TEST(TmuxDirectClient, BringsBackTheAnswer) {
  const FakeTmux server(answering("rows\n"));
  const auto [reach, exchange] = ask(server.socket());
  EXPECT_EQ(reach, Reach::spoken);
  EXPECT_EQ(exchange.answer.end, End::exited);
  EXPECT_EQ(exchange.answer.output, "rows\n");
  EXPECT_EQ(exchange.surprise, std::nullopt);
  EXPECT_TRUE(exchange.commandMayHaveLeft);
}

TEST(TmuxDirectClient, UsesTheTimeInWhichTheServerIsAtWork) {
  std::promise<void> used;
  const FakeTmux server([&](FakeTmuxClient& client) {
    used.get_future().wait();
    answering("rows\n")(client);
  });
  TmuxInvocation invocation = asking();
  invocation.meanwhile = [&] { used.set_value(); };
  EXPECT_EQ(ask(server.socket(), invocation).exchange.answer.output, "rows\n");
}

TEST(TmuxDirectClient, HandsOverInputThatFitsNoBuffer) {
  std::string received;
  std::promise<void> all;
  FakeTmux server([&](FakeTmuxClient& client) {
    client.await(Type::command);
    client.say(testing::readOpen(3, 0));
    while (client.await(Type::read)) {
      received += client.body.substr(4);
      if (received.size() == 5'000'000) break;
    }
    client.await(Type::readDone);
    client.say(testing::exited());
    client.awaitEnd();
    all.set_value();
  });
  TmuxInvocation invocation = asking();
  invocation.standardInput = std::string(5'000'000, 'x');
  EXPECT_EQ(ask(server.socket(), invocation).exchange.answer.end, End::exited);
  all.get_future().wait();
  EXPECT_TRUE(received == *invocation.standardInput) << received.size();
}

TEST(TmuxDirectClient, FindsNoServerWhereNobodyListens) {
  const TemporaryDirectory folder;
  EXPECT_EQ(ask(folder / "nothing").reach, Reach::noServer);
  testing::writeFile(folder / "file", "");
  EXPECT_EQ(ask(folder / "file").reach, Reach::noServer);
  EXPECT_EQ(ask(folder / std::string(300, 'x')).reach, Reach::noServer) << "no socket has such a path";
}

TEST(TmuxDirectClient, SaysNothingToAnotherProcessThanTheOneThatWasNamed) {
  std::promise<bool> heard;
  FakeTmux server([&](FakeTmuxClient& client) { heard.set_value(client.await(Type::identifyFlags)); });
  EXPECT_EQ(ask(server.socket(), asking(), 1).reach, Reach::otherServer);
  EXPECT_FALSE(heard.get_future().get());
}

// Only root can become another user; for anyone else the user at the other end is always the right one.
TEST(TmuxDirectClient, SaysNothingToAServerOfAnotherUser) {
  const TemporaryDirectory folder;
  std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder / "s";
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  auto [ready, told] = openPipe();
  const pid_t process = ::fork();
  if (process == 0) {
    const bool other = ::geteuid() != 0 || ::setuid(65'534) == 0;
    const int listening = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const bool listens =
        other && ::bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        ::listen(listening, 1) == 0;
    if (!listens || ::write(told.get(), "x", 1) != 1) ::_exit(2);
    const int client = ::accept(listening, nullptr, nullptr);
    char byte = 0;
    ::_exit(::read(client, &byte, 1) > 0 ? 1 : 0);
  }
  told.close();
  char byte = 0;
  ASSERT_EQ(::read(ready.get(), &byte, 1), 1);
  EXPECT_EQ(ask(path, asking(200ms), process).reach, ::geteuid() == 0 ? Reach::otherUser : Reach::spoken);
  int status = -1;
  ::waitpid(process, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), ::geteuid() == 0 ? 0 : 1) << "what it heard";
}

TEST(TmuxDirectClient, EndsAtTheDeadlineWhereverTheServerStops) {
  for (const std::string& said :
       {std::string(), testing::writeOpen(1, 1), testing::readOpen(3, 0), answerOf("x").substr(0, 10)}) {
    FakeTmux server([&](FakeTmuxClient& client) {
      client.await(Type::command);
      client.say(said);
      client.awaitEnd();
    });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ask(server.socket(), asking(50ms)).exchange.answer.end, End::timedOut);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
  }
}

TEST(TmuxDirectClient, EndsAtTheDeadlineWhenNothingIsTaken) {
  FakeTmux server([](FakeTmuxClient& client) {
    client.await(Type::command);
    client.say(testing::readOpen(3, 0));
    char byte = 0;
    while (::recv(client.descriptor(), &byte, 1, MSG_PEEK) > 0 &&
           client.say(testing::message(Type::flags, testing::numbers({0, 0})))) {
      std::this_thread::yield();
    }
  });
  TmuxInvocation invocation = asking(100ms);
  invocation.standardInput = std::string(5'000'000, 'x');
  EXPECT_EQ(ask(server.socket(), invocation).exchange.answer.end, End::timedOut);
}

TEST(TmuxDirectClient, HandsOverNoInputAfterTheDeadline) {
  std::promise<bool> heard;
  std::promise<void> passed;
  FakeTmux server([&](FakeTmuxClient& client) {
    client.await(Type::command);
    passed.get_future().wait();
    client.say(testing::readOpen(3, 0));
    heard.set_value(client.await(Type::read));
  });
  TmuxInvocation invocation = asking(20ms);
  invocation.standardInput = "late";
  EXPECT_EQ(ask(server.socket(), invocation).exchange.answer.end, End::timedOut);
  passed.set_value();
  EXPECT_FALSE(heard.get_future().get());
}

TEST(TmuxDirectClient, WaitsForAPlaceInTheQueueOfABusyServerNoLongerThanTheDeadline) {
  // Nobody accepts, so the queue stays full.
  const TemporaryDirectory folder;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder / "s";
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const FileDescriptor listening = SocketPlatform::openStreamSocket();
  ASSERT_EQ(::bind(listening.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(listening.get(), 0), 0);
  const FileDescriptor first = SocketPlatform::openStreamSocket();
  ASSERT_EQ(::connect(first.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);

  const auto [reach, exchange] = ask(path, asking(50ms));
  EXPECT_EQ(reach, Reach::spoken);
  EXPECT_EQ(exchange.answer.end, End::timedOut);
  EXPECT_FALSE(exchange.commandMayHaveLeft);

  TmuxDirectClient client(path, "", "");
  auto waiting = std::async(std::launch::async, [&] { return client.ask(asking(), ::getpid()); });
  client.cancel();
  EXPECT_EQ(waiting.get().exchange.answer.end, End::cancelled);
}

TEST(TmuxDirectClient, EndsTheCallsUnderWayAndAllLaterOnesOnCancel) {
  std::promise<void> asked;
  FakeTmux server([&](FakeTmuxClient& client) {
    if (client.await(Type::command)) asked.set_value();
    client.awaitEnd();
  });
  TmuxDirectClient client(server.socket(), "", "");
  auto call = std::async(std::launch::async, [&] { return client.ask(asking(), ::getpid()); });
  asked.get_future().wait();
  client.cancel();
  client.cancel();
  EXPECT_EQ(call.get().exchange.answer.end, End::cancelled);
  EXPECT_EQ(client.ask(asking(), ::getpid()).exchange.answer.end, End::cancelled);
}

TEST(TmuxDirectClient, SaysSoWhenTheServerHangsUpAnywhere) {
  const std::string answer = answerOf("rows\n");
  for (std::size_t cut = 0; cut < answer.size(); ++cut) {
    FakeTmux server([&](FakeTmuxClient& client) {
      client.await(Type::command);
      client.say(answer.substr(0, cut));
    });
    const auto [reach, exchange] = ask(server.socket());
    EXPECT_EQ(reach, Reach::spoken);
    EXPECT_EQ(exchange.answer.end, End::exited);
    EXPECT_EQ(exchange.answer.exitStatus, 1);
    EXPECT_EQ(exchange.answer.errorOutput, "server exited unexpectedly\n");
    EXPECT_NE(exchange.surprise, std::nullopt);
    EXPECT_TRUE(exchange.commandMayHaveLeft);
  }
}

TEST(TmuxDirectClient, BringsBackWhatAServerSaidBeforeItHungUp) {
  // It answers before it reads, and is gone when the client wants to send more.
  FakeTmux server([](FakeTmuxClient& client) { client.say(answerOf("early\n")); });
  const auto [reach, exchange] = ask(server.socket());
  EXPECT_EQ(exchange.answer.output, "early\n");
  EXPECT_EQ(exchange.surprise, std::nullopt);
}

TEST(TmuxDirectClient, StopsAtOutputWithoutEnd) {
  FakeTmux server([](FakeTmuxClient& client) {
    client.await(Type::command);
    client.say(testing::writeOpen(1, 1));
    while (client.say(testing::write(1, std::string(16'000, 'y')))) {
    }
  });
  TmuxInvocation invocation = asking();
  invocation.outputLimit = 1'000'000;
  const TmuxAnswer answer = ask(server.socket(), invocation).exchange.answer;
  EXPECT_EQ(answer.end, End::outputTooLarge);
  EXPECT_LE(answer.output.size(), 1'000'000u);
}

TEST(TmuxDirectClient, TakesNoDescriptorThatAServerSends) {
  FakeTmux server([](FakeTmuxClient& client) {
    client.await(Type::command);
    std::string bytes = answerOf("x");
    iovec part{bytes.data(), bytes.size()};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))]{};
    msghdr header{};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = control;
    header.msg_controllen = sizeof control;
    cmsghdr* const rights = CMSG_FIRSTHDR(&header);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(sizeof(int));
    const int sent = STDERR_FILENO;
    std::memcpy(CMSG_DATA(rights), &sent, sizeof sent);
    EXPECT_GT(::sendmsg(client.descriptor(), &header, 0), 0);
    client.awaitEnd();
  });
  TmuxDirectClient client(server.socket(), "", "");
  client.ask(asking(), ::getpid());
  const std::size_t before = namesIn("/proc/self/fd").size();
  for (int count = 0; count < 20; ++count)
    EXPECT_EQ(client.ask(asking(), ::getpid()).exchange.answer.output, "x");
  // The server's end of the last connection may still be open.
  EXPECT_LE(namesIn("/proc/self/fd").size(), before + 1);
}

TEST(TmuxDirectClient, RunsCallsSideBySide) {
  // The server answers nobody before all have asked.
  constexpr int count = 8;
  std::vector<FileDescriptor> kept;
  std::atomic<int> asked = 0;
  FakeTmux server([&](FakeTmuxClient& client) {
    client.await(Type::command);
    kept.emplace_back(::dup(client.descriptor()));
    if (++asked < count) return;
    for (const FileDescriptor& each : kept) {
      const std::string answer = answerOf("x");
      EXPECT_EQ(SocketPlatform::writeToSocket(each.get(), answer.data(), answer.size()),
                static_cast<ssize_t>(answer.size()));
    }
  });
  TmuxDirectClient client(server.socket(), "", "");
  std::vector<std::future<TmuxDirectResult>> calls;
  for (int call = 0; call < count; ++call) {
    calls.push_back(std::async(std::launch::async, [&] { return client.ask(asking(), ::getpid()); }));
  }
  for (auto& call : calls) EXPECT_EQ(call.get().exchange.answer.output, "x");
}

}  // namespace
}  // namespace velmora
