#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <future>
#include <optional>

#include "LocalControl/LocalControlClient.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/LocalControlServer.h"
#include "LocalControl/UnixSocketClient.h"
#include "tests/LocalControl/OtherUser.h"
#include "tests/LocalControl/SocketTesting.h"
#include "tests/support/LogLines.h"
#include "tests/support/RecordHandler.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using namespace std::string_literals;

LocalControlResponse echo(const LocalControlRequest& request) {
  LocalControlResponse response;
  response.requestId = request.requestId;
  response.ok = true;
  response.data = request.arguments;
  return response;
}

std::string nameOfThisThread() {
  std::array<char, 64> name{};
  ::pthread_getname_np(::pthread_self(), name.data(), name.size());
  return name.data();
}

class LocalControlServerTest : public ::testing::Test {
 protected:
  void SetUp() override { start(echo); }

  template <class Answer>
  void start(Answer answer) {
    server_.emplace(testing::recordHandler(std::move(answer)), socket_,
                    LocalControlServerOptions{
                        .log = log_.log(),
                        .acceptingEnded = [this](const std::string& reason) { reason_.set_value(reason); },
                        .place = [this] { return place(); },
                        .lookEvery = std::chrono::milliseconds(5)});
    server_->start();
  }
  std::filesystem::path place() const {
    const MutexLock lock(mutex_);
    return place_;
  }
  void belongsTo(const std::filesystem::path& place) {
    const MutexLock lock(mutex_);
    place_ = place;
  }
  void expectAnswerAt(const std::filesystem::path& place) const {
    LocalControlClient client(place);
    EXPECT_EQ(client.send(sampleRequest()), echo(sampleRequest()));
  }
  UnixSocketConnection connected() const { return UnixSocketClient::connect(socket_); }

  static std::string answerOn(UnixSocketConnection& connection, const LocalControlRequest& request) {
    connection.writeFrame(LocalControlCodec::frame(request));
    return connection.readFrame();
  }
  static std::string expectedAnswerTo(const LocalControlRequest& request) {
    return LocalControlCodec::frame(echo(request));
  }

  // Writes `bytes` and expects the server to close without an answer, and to serve others all the same.
  void expectSilentEndAfter(const std::string& bytes, const std::string& reason) {
    auto other = connected();
    EXPECT_EQ(answerOn(other, sampleRequest("before")), expectedAnswerTo(sampleRequest("before")));
    auto bad = connected();
    bad.writeFrame(bytes);
    EXPECT_EQ(errorOf<UnixSocketError>([&] { bad.readFrame(); }), UnixSocketError::disconnected());
    EXPECT_EQ(answerOn(other, sampleRequest("after")), expectedAnswerTo(sampleRequest("after")));
    auto next = connected();
    EXPECT_EQ(answerOn(next, sampleRequest("next")), expectedAnswerTo(sampleRequest("next")));
    server_.reset();
    EXPECT_EQ(log_.count("warning socket: a connection was closed: " + reason), 1u);
  }

  TemporaryDirectory temporary_;
  const std::filesystem::path socket_ = temporary_ / "d" / "control-v1.sock";
  mutable Mutex mutex_;
  std::filesystem::path place_ VELMORA_GUARDED_BY(mutex_) = socket_;
  testing::LogLines log_;
  // Here, not in a test, so that they outlive the threads of the server.
  std::promise<std::string> reason_;  // why accepting ended; a second one would throw
  std::promise<void> entered_;        // a handler was
  std::promise<void> released_;       // a handler may go on
  std::promise<void> noticed_;        // a handler did
  std::optional<LocalControlServer> server_;
};

TEST_F(LocalControlServerTest, AnswersARequest) {
  LocalControlClient client(socket_);
  EXPECT_EQ(client.send(sampleRequest()), echo(sampleRequest()));
}

TEST_F(LocalControlServerTest, AnswersTwoRequestsSentBackToBackInOrder) {
  auto connection = connected();
  connection.writeFrame(LocalControlCodec::frame(sampleRequest("first")) +
                        LocalControlCodec::frame(sampleRequest("second")));
  EXPECT_EQ(connection.readFrame(), expectedAnswerTo(sampleRequest("first")));
  EXPECT_EQ(connection.readFrame(), expectedAnswerTo(sampleRequest("second")));
}

TEST_F(LocalControlServerTest, AnswersARequestThatArrivesOneByteAtATime) {
  auto connection = connected();
  for (const char byte : LocalControlCodec::frame(sampleRequest())) connection.writeFrame({&byte, 1});
  EXPECT_EQ(connection.readFrame(), expectedAnswerTo(sampleRequest()));
}

TEST_F(LocalControlServerTest, PassesOtherProtocolVersionsToTheHandler) {
  auto request = sampleRequest();
  request.protocolVersion = 2;
  auto connection = connected();
  EXPECT_EQ(answerOn(connection, request), expectedAnswerTo(request));
}

TEST_F(LocalControlServerTest, ServesAConnectionWhileAnotherWaitsForItsAnswer) {
  server_.reset();
  start([&](const LocalControlRequest& request) {
    if (request.arguments.at("command") == JSONValue("slow")) {
      entered_.set_value();
      released_.get_future().wait();
    }
    return echo(request);
  });
  auto slow = connected();
  slow.writeFrame(LocalControlCodec::frame(sampleRequest("slow")));
  entered_.get_future().wait();
  auto quick = connected();
  EXPECT_EQ(answerOn(quick, sampleRequest("quick")), expectedAnswerTo(sampleRequest("quick")));
  released_.set_value();
  EXPECT_EQ(slow.readFrame(), expectedAnswerTo(sampleRequest("slow")));
}

TEST_F(LocalControlServerTest, EndsOnlyTheConnectionThatSentAZeroLength) {
  expectSilentEndAfter("\0\0\0\0"s, "what it sent is no request (emptyFrame)");
}

TEST_F(LocalControlServerTest, EndsOnlyTheConnectionThatSentALengthOverTheLimit) {
  expectSilentEndAfter("\0\x10\0\1"s, "what it sent is no request (frameTooLarge)");
}

TEST_F(LocalControlServerTest, EndsOnlyTheConnectionThatSentGarbage) {
  expectSilentEndAfter("GET / HTTP/1.1\r\n\r\n", "what it sent is no request (frameTooLarge)");
}

TEST_F(LocalControlServerTest, EndsOnlyTheConnectionThatSentNoUtf8) {
  expectSilentEndAfter("\0\0\0\1\xFF"s, "what it sent is no request (invalidFrame)");
}

TEST_F(LocalControlServerTest, EndsOnlyTheConnectionThatSentNoJson) {
  expectSilentEndAfter("\0\0\0\1{"s, "what it sent is no request");
}

TEST_F(LocalControlServerTest, EndsOnlyTheConnectionThatSentNoRequest) {
  expectSilentEndAfter("\0\0\0\2{}"s, "what it sent is no request");
}

TEST_F(LocalControlServerTest, EndsOnlyTheConnectionWhoseAnswerIsTooLarge) {
  server_.reset();
  start([](const LocalControlRequest& request) {
    auto response = echo(request);
    if (request.arguments.at("command") == JSONValue("large")) {
      response.data = std::string(LocalControlCodec::maximumPayloadSize, 'x');
    }
    return response;
  });
  expectSilentEndAfter(LocalControlCodec::frame(sampleRequest("large")),
                       "its request could not be answered (frameTooLarge)");
}

TEST_F(LocalControlServerTest, EndsOnlyTheConnectionWhoseHandlerThrows) {
  server_.reset();
  start([](const LocalControlRequest& request) {
    if (request.arguments.at("command") == JSONValue("throw")) throw std::runtime_error("handler");
    return echo(request);
  });
  expectSilentEndAfter(LocalControlCodec::frame(sampleRequest("throw")), "its request could not be answered");
}

TEST_F(LocalControlServerTest, SurvivesAPeerThatLeavesBeforeItsAnswer) {
  server_.reset();
  start([&](const LocalControlRequest& request) {
    if (request.arguments.at("command") == JSONValue("leave")) {
      entered_.set_value();
      released_.get_future().wait();
    }
    return echo(request);
  });
  {
    auto leaving = connected();
    leaving.writeFrame(LocalControlCodec::frame(sampleRequest("leave")));
    entered_.get_future().wait();
  }
  released_.set_value();
  auto next = connected();
  EXPECT_EQ(answerOn(next, sampleRequest()), expectedAnswerTo(sampleRequest()));
}

TEST_F(LocalControlServerTest, EndsAcceptingForGoodWhenAcceptFailsAndServesOnWhomItServes) {
  auto served = connected();
  EXPECT_EQ(answerOn(served, sampleRequest()), expectedAnswerTo(sampleRequest()));
  FileDescriptor late = SocketPlatform::openStreamSocket();
  {
    const NoMoreDescriptors limit;
    const auto address = UnixSocketEndpoint::address(socket_);
    ASSERT_EQ(
        ::connect(late.get(), reinterpret_cast<const sockaddr*>(&address), UnixSocketEndpoint::addressLength),
        0);
    EXPECT_EQ(reason_.get_future().get(), "accept: Too many open files");
  }
  EXPECT_EQ(
      log_.count(
          "error socket: accepting has ended until the bridge starts again: accept: Too many open files"),
      1u);
  server_->start();
  EXPECT_FALSE(server_->isAccepting());
  EXPECT_EQ(answerOn(served, sampleRequest("on")), expectedAnswerTo(sampleRequest("on")));
  // Nobody took this one; it hears so at once, and whoever comes later is refused.
  UnixSocketConnection waiting(std::move(late));
  EXPECT_EQ(errorOf<UnixSocketError>([&] { waiting.readFrame(); }), UnixSocketError::disconnected());
  EXPECT_EQ(errorOf<UnixSocketError>([&] { connected(); }), UnixSocketError::system("connect", ENOENT));
}

TEST_F(LocalControlServerTest, EndsAcceptingForGoodWhenAPeerIsOfAnotherUser) {
  auto served = connected();
  EXPECT_EQ(answerOn(served, sampleRequest()), expectedAnswerTo(sampleRequest()));
  if (::geteuid() == 0) {
    openToEveryone(temporary_, socket_.parent_path(), socket_);
    const OtherUser stranger(socket_);
    EXPECT_EQ(stranger.outcome(), OtherUser::closedByServer);
    EXPECT_EQ(reason_.get_future().get(), "a process of another user was at the other end");
    EXPECT_FALSE(server_->isAccepting());
    EXPECT_EQ(answerOn(served, sampleRequest("on")), expectedAnswerTo(sampleRequest("on")));
    EXPECT_EQ(errorOf<UnixSocketError>([&] { connected(); }), UnixSocketError::system("connect", ENOENT));
  }
  EXPECT_EQ(errorOf<UnixSocketError>([&] { served.verifyPeer(::geteuid() + 1); }),
            UnixSocketError::peerRejected());
}

TEST_F(LocalControlServerTest, LeavesConnectionsWaitingWhileThereIsNoRoomForThem) {
  std::atomic<bool> thereIsRoom = false;
  server_.reset();
  server_.emplace(testing::recordHandler([&](const LocalControlRequest& request) {
                    if (request.arguments.at("command") == JSONValue("third")) {
                      EXPECT_TRUE(thereIsRoom);
                    }
                    return echo(request);
                  }),
                  socket_, LocalControlServerOptions{.mostConnections = 2});
  server_->start();
  std::optional first(connected());
  auto second = connected();
  EXPECT_EQ(answerOn(*first, sampleRequest()), expectedAnswerTo(sampleRequest()));
  EXPECT_EQ(answerOn(second, sampleRequest()), expectedAnswerTo(sampleRequest()));
  auto third = connected();
  third.writeFrame(LocalControlCodec::frame(sampleRequest("third")));
  for (int round = 0; round < 100; ++round) {
    EXPECT_EQ(answerOn(second, sampleRequest()), expectedAnswerTo(sampleRequest()));
  }
  thereIsRoom = true;
  first.reset();
  EXPECT_EQ(third.readFrame(), expectedAnswerTo(sampleRequest("third")));
}

TEST_F(LocalControlServerTest, ServesConnectionsThatWaitedForItsStart) {
  server_.reset();
  server_.emplace(testing::recordHandler(echo), socket_);
  EXPECT_FALSE(server_->isAccepting());
  auto early = connected();
  early.writeFrame(LocalControlCodec::frame(sampleRequest()));
  server_->start();
  EXPECT_TRUE(server_->isAccepting());
  EXPECT_EQ(early.readFrame(), expectedAnswerTo(sampleRequest()));
}

TEST_F(LocalControlServerTest, AcceptsNoMoreAfterStopAndServesOnWhomItServes) {
  auto served = connected();
  EXPECT_EQ(answerOn(served, sampleRequest()), expectedAnswerTo(sampleRequest()));
  server_->stop();
  EXPECT_FALSE(server_->isAccepting());
  EXPECT_EQ(errorOf<UnixSocketError>([&] { connected(); }), UnixSocketError::system("connect", ENOENT));
  EXPECT_EQ(answerOn(served, sampleRequest("on")), expectedAnswerTo(sampleRequest("on")));
  server_->start();
  EXPECT_FALSE(server_->isAccepting());
  EXPECT_EQ(log_.count("accepting has ended"), 0u) << "it was asked to";
}

TEST_F(LocalControlServerTest, ListensAgainWhenItsSocketFileHasGoneAndServesOnWhomItServes) {
  auto served = connected();
  EXPECT_EQ(answerOn(served, sampleRequest()), expectedAnswerTo(sampleRequest()));
  for (const bool withItsFolder : {false, true}) {
    std::filesystem::remove_all(withItsFolder ? socket_.parent_path() : socket_);
    yieldUntil([&] { return UnixSocketClient::isAnswering(socket_); });
    expectAnswerAt(socket_);
    EXPECT_EQ(modeOf(socket_), 0600u);
    EXPECT_EQ(modeOf(socket_.parent_path()), 0700u);
  }
  EXPECT_EQ(answerOn(served, sampleRequest("on")), expectedAnswerTo(sampleRequest("on")));
  EXPECT_EQ(log_.count("warning socket: the socket had gone; serving at " + socket_.string()), 2u);
}

TEST_F(LocalControlServerTest, MovesToWhereItsSocketBelongsByNow) {
  const auto late = temporary_ / "late" / "control-v1.sock";
  belongsTo(late);
  yieldUntil([&] { return UnixSocketClient::isAnswering(late) && server_->socketURL() == late; });
  expectAnswerAt(late);
  EXPECT_FALSE(std::filesystem::exists(socket_));
  EXPECT_EQ(log_.count("warning socket: the place for sockets has changed; serving at " + late.string()), 1u);
}

TEST_F(LocalControlServerTest, TakesNoPlaceAtWhichAnotherAnswersAndSaysSoOnce) {
  const auto taken = temporary_ / "taken" / "control-v1.sock";
  std::optional<LocalControlServer> other(std::in_place, testing::recordHandler(echo), taken);
  belongsTo(taken);
  const auto complaint =
      "error socket: clients cannot find the bridge at " + taken.string() + ": another bridge answers there";
  yieldUntil([&] { return log_.count(complaint) > 0; });
  expectAnswerAt(socket_);
  other.reset();
  yieldUntil([&] { return server_->socketURL() == taken; });
  EXPECT_EQ(log_.count(complaint), 1u);
}

TEST_F(LocalControlServerTest, TriesAgainWhenItCannotListenWhereItsSocketBelongs) {
  const auto folder = temporary_ / "blocked";
  std::ofstream(folder) << "a file";
  belongsTo(folder / "control-v1.sock");
  yieldUntil([&] { return log_.count("error socket: clients cannot find the bridge at ") > 0; });
  expectAnswerAt(socket_);
  std::filesystem::remove(folder);
  yieldUntil([&] { return UnixSocketClient::isAnswering(folder / "control-v1.sock"); });
  expectAnswerAt(folder / "control-v1.sock");
}

TEST_F(LocalControlServerTest, NamesItsThreads) {
  server_.emplace(testing::recordHandler([](const LocalControlRequest& request) {
                    auto response = echo(request);
                    response.data = nameOfThisThread();
                    return response;
                  }),
                  socket_, LocalControlServerOptions{.acceptingEnded = [&](const std::string&) {
                    reason_.set_value(nameOfThisThread());
                  }});
  server_->start();
  LocalControlClient client(socket_);
  EXPECT_EQ(client.send(sampleRequest()).data, JSONValue("connection"));
  const FileDescriptor late = SocketPlatform::openStreamSocket();
  const auto address = UnixSocketEndpoint::address(socket_);
  const NoMoreDescriptors limit;
  ASSERT_EQ(
      ::connect(late.get(), reinterpret_cast<const sockaddr*>(&address), UnixSocketEndpoint::addressLength),
      0);
  EXPECT_EQ(reason_.get_future().get(), "accept");
}

TEST_F(LocalControlServerTest, QuotesNothingOfWhatAClientSent) {
  auto request = LocalControlCodec::frame(sampleRequest("a secret"));
  const auto operation = request.find("terminal_send_command");
  request.replace(operation, 8, "tErmInAl");
  expectSilentEndAfter(request, "what it sent is no request");
  EXPECT_EQ(log_.count("secret") + log_.count("tErmInAl"), 0u);
}

TEST_F(LocalControlServerTest, TellsTheHandlerWhetherTheCallerHasLeft) {
  server_.emplace(
      [&](std::string_view, const Caller& caller) -> std::string {
        EXPECT_FALSE(caller.hasLeft());
        entered_.set_value();
        yieldUntil(caller.hasLeft);
        noticed_.set_value();
        return "{}";
      },
      socket_);
  server_->start();
  {
    auto leaving = connected();
    leaving.writeFrame(LocalControlCodec::frame(sampleRequest()));
    entered_.get_future().wait();
  }
  noticed_.get_future().wait();
}

TEST_F(LocalControlServerTest, AnswersWhatIsUnderWayBeforeItEndsAndReadsNothingMore) {
  server_.reset();
  start([&](const LocalControlRequest& request) {
    EXPECT_NE(request.arguments.at("command"), JSONValue("too late"));
    entered_.set_value();
    released_.get_future().wait();
    return echo(request);
  });
  auto idle = connected();
  auto slow = connected();
  slow.writeFrame(LocalControlCodec::frame(sampleRequest("slow")) +
                  LocalControlCodec::frame(sampleRequest("too late")));
  entered_.get_future().wait();
  std::thread ending([this] { server_->finish(std::chrono::minutes(1)); });
  EXPECT_EQ(errorOf<UnixSocketError>([&] { idle.readFrame(); }), UnixSocketError::disconnected());
  released_.set_value();
  EXPECT_EQ(slow.readFrame(), expectedAnswerTo(sampleRequest("slow")));
  EXPECT_EQ(errorOf<UnixSocketError>([&] { slow.readFrame(); }), UnixSocketError::disconnected());
  ending.join();
}

TEST_F(LocalControlServerTest, EndsWithReadersBlockedBeforeAndInsideAFrame) {
  auto idle = connected();
  EXPECT_EQ(answerOn(idle, sampleRequest()), expectedAnswerTo(sampleRequest()));
  auto half = connected();
  EXPECT_EQ(answerOn(half, sampleRequest()), expectedAnswerTo(sampleRequest()));
  half.writeFrame("\0\0"s);
  server_.reset();
  EXPECT_EQ(errorOf<UnixSocketError>([&] { idle.readFrame(); }), UnixSocketError::disconnected());
  EXPECT_EQ(errorOf<UnixSocketError>([&] { half.readFrame(); }), UnixSocketError::disconnected());
}

TEST_F(LocalControlServerTest, EndsWithAWriterBlockedByAPeerThatDoesNotRead) {
  server_.reset();
  start([&](const LocalControlRequest& request) {
    entered_.set_value();
    auto response = echo(request);
    response.data = std::string(LocalControlCodec::maximumPayloadSize - 1000, 'x');
    return response;
  });
  auto connection = connected();
  connection.writeFrame(LocalControlCodec::frame(sampleRequest()));
  entered_.get_future().wait();
  yieldUntil([&] { return waitingBytes(connection.descriptor()) > 0; });
  server_.reset();
  EXPECT_EQ(errorOf<UnixSocketError>([&] { connection.readFrame(); }), UnixSocketError::disconnected());
}

TEST_F(LocalControlServerTest, RemovesItsSocketWhenDestroyed) {
  EXPECT_TRUE(std::filesystem::is_socket(socket_));
  server_.reset();
  EXPECT_FALSE(std::filesystem::exists(socket_));
}

TEST_F(LocalControlServerTest, EndsWithoutHavingStarted) {
  server_.reset();
  server_.emplace(testing::recordHandler(echo), socket_);
  server_.reset();
  EXPECT_FALSE(std::filesystem::exists(socket_));
}

TEST_F(LocalControlServerTest, PassesTheSocketsErrorsOn) {
  std::ofstream(temporary_ / "file") << "kept";
  EXPECT_EQ(errorOf<UnixSocketError>(
                [&] { LocalControlServer(testing::recordHandler(echo), temporary_ / "file"); }),
            UnixSocketError::unsafeEndpoint());
}

}  // namespace
}  // namespace velmora
