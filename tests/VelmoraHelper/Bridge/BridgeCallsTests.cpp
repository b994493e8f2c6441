#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <list>

#include "LocalControl/UnixSocketClient.h"
#include "LocalControl/UnixSocketServer.h"
#include "VelmoraHelper/Bridge/BridgeCalls.h"
#include "tests/VelmoraHelper/BridgeRecords.h"
#include "tests/VelmoraHelper/FakeApplication.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::FakeApplication;
using ::testing::IsEmpty;

const std::string session = "11111111-2222-4333-8444-555555555555";
const std::string otherSession = "AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE";

LocalControlRequest request(ToolName tool, JSONObject arguments = {}) {
  return {.requestId = Uuid::random(), .operation = tool, .arguments = std::move(arguments)};
}

LocalControlRequest command(const std::string& text, const std::string& target = session) {
  return request(ToolName::sendCommand, {{"sessionId", target}, {"command", text}});
}

class BridgeCallsTest : public ::testing::Test {
 protected:
  BridgeCalls::Id start(const LocalControlRequest& toSend) {
    return calls.start(
        testing::bridgeRequest(toSend),
        [this](const BridgeAnswer& answer) { done.push_back(testing::recordOf(answer)); }, now);
  }

  std::vector<std::string> commandsThatArrive() {
    std::vector<std::string> texts;
    calls.advance(now);
    for (auto& received : application.receive()) {
      texts.push_back(*received.request.arguments.at("command").string());
      arrived.push_back(std::move(received));
    }
    return texts;
  }

  std::string messageOfTheOnlyFailure() {
    EXPECT_EQ(done.size(), 1u);
    return done.size() == 1 && done[0].error ? done[0].error->message : "";
  }

  SteadyTime now{};
  FakeApplication application;
  BridgeCalls calls{[this] { return application.connect(); }, {.running = 3, .waiting = 4, .deadline = 50s}};
  std::vector<LocalControlResponse> done;
  std::vector<FakeApplication::Received> arrived;
};

TEST_F(BridgeCallsTest, CarriesTheRequestAndReturnsTheAnswerUnchanged) {
  const auto sent = request(ToolName::sendKey, {{"key", "home"}});
  start(sent);
  calls.advance(now);
  const auto received = application.receiveOne();
  EXPECT_EQ(received.request, sent);
  EXPECT_THAT(done, IsEmpty());
  FakeApplication::answer(received, {.ok = true, .data = JSONObject{{"a", 1.5}}});
  calls.advance(now);
  EXPECT_THAT(done, ElementsAre(LocalControlResponse{
                        .requestId = sent.requestId, .ok = true, .data = JSONObject{{"a", 1.5}}}));
  EXPECT_TRUE(calls.isEmpty());
  EXPECT_EQ(calls.nextDeadline(), std::nullopt);
}

TEST_F(BridgeCallsTest, NeitherStartsNorAnswersACallBeforeItIsAdvanced) {
  application.isRunning = false;
  start(request(ToolName::status));
  EXPECT_THAT(done, IsEmpty());
  EXPECT_EQ(application.connected, 0);
  calls.advance(now);
  EXPECT_EQ(messageOfTheOnlyFailure(), "Velmora is not running.");
}

TEST_F(BridgeCallsTest, ACallThatFindsTheQueueFullWaitsForItsTurn) {
  application.isCrowded = true;
  start(request(ToolName::status));
  start(request(ToolName::status));
  calls.advance(now);
  EXPECT_THAT(done, IsEmpty());
  EXPECT_EQ(calls.nextDeadline(), now + 5ms);
  now += 4ms;
  application.isCrowded = false;
  calls.advance(now);
  EXPECT_EQ(application.connected, 0) << "it knocks again after a pause only";
  now += 1ms;
  calls.advance(now);
  EXPECT_EQ(application.receive().size(), 2u);
}

TEST_F(BridgeCallsTest, ACallThatFindsTheQueueFullToItsDeadlineSaysSo) {
  application.isCrowded = true;
  start(request(ToolName::status));
  for (const auto end = now + 50s; now < end; now += 5ms) calls.advance(now);
  EXPECT_THAT(done, IsEmpty());
  calls.advance(now);
  EXPECT_EQ(messageOfTheOnlyFailure(), "Velmora is running but accepts no more connections.");
  EXPECT_TRUE(done[0].error->retryable);
}

TEST_F(BridgeCallsTest, EveryCallOfABurstReachesAListenerWithAShortQueue) {
  const TemporaryDirectory directory;
  UnixSocketServer listener(directory / "s");
  BridgeCalls burst([&] { return UnixSocketClient::connectWithoutBlocking(directory / "s"); });
  int answered = 0;
  for (int call = 0; call < 300; ++call) {
    burst.start(
        testing::bridgeRequest(request(ToolName::status)),
        [&](const BridgeAnswer& answer) { answered += testing::recordOf(answer).ok ? 1 : 0; }, now);
  }
  std::list<UnixSocketConnection> served;
  for (int round = 0; answered < 300 && round < 10'000; ++round, now += 5ms) {
    burst.advance(now);
    pollfd waiting{.fd = listener.descriptor(), .events = POLLIN, .revents = 0};
    if (::poll(&waiting, 1, 0) == 1) served.push_back(listener.acceptConnection());
    for (auto& connection : served) {
      pollfd asked{.fd = connection.descriptor(), .events = POLLIN, .revents = 0};
      if (::poll(&asked, 1, 0) != 1 || (asked.revents & POLLHUP) != 0) continue;
      const auto received = LocalControlCodec::decode<LocalControlRequest>(connection.readFrame());
      connection.writeFrame(
          LocalControlCodec::frame(LocalControlResponse{.requestId = received.requestId, .ok = true}));
    }
  }
  EXPECT_EQ(answered, 300);
}

TEST_F(BridgeCallsTest, RunsCallsSideBySideAndAnswersTheQuickOneFirst) {
  start(request(ToolName::readOutput));
  start(request(ToolName::status));
  calls.advance(now);
  auto received = application.receive();
  ASSERT_EQ(received.size(), 2u);
  FakeApplication::answer(received[1], {.ok = true});
  calls.advance(now);
  ASSERT_EQ(done.size(), 1u);
  EXPECT_EQ(done[0].requestId, received[1].request.requestId);
  FakeApplication::answer(received[0], {.ok = true});
  calls.advance(now);
  EXPECT_EQ(done.size(), 2u);
}

TEST_F(BridgeCallsTest, KeepsTheOrderOfCallsThatChangeTheSameSession) {
  start(command("first"));
  start(command("second"));
  start(command("other", otherSession));
  auto lowerCase = session;
  start(command("third", lowerCase));
  EXPECT_THAT(commandsThatArrive(), ElementsAre("first", "other"));
  FakeApplication::answer(arrived[1], {.ok = true});
  EXPECT_THAT(commandsThatArrive(), IsEmpty());
  FakeApplication::answer(arrived[0], {.ok = true});
  EXPECT_THAT(commandsThatArrive(), ElementsAre("second"));
  FakeApplication::answer(arrived[2], {.ok = true});
  EXPECT_THAT(commandsThatArrive(), ElementsAre("third"));
}

TEST_F(BridgeCallsTest, TheSessionsOrderDoesNotDependOnTheSpellingOfItsId) {
  start(command("first", "aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee"));
  start(command("second", otherSession));
  EXPECT_THAT(commandsThatArrive(), ElementsAre("first"));
}

TEST_F(BridgeCallsTest, ReadingASessionOvertakesChangingIt) {
  start(command("slow"));
  start(request(ToolName::readOutput, {{"sessionId", session}}));
  calls.advance(now);
  EXPECT_EQ(application.receive().size(), 2u);
}

TEST_F(BridgeCallsTest, UsesOneConnectionForCallsThatFollowEachOther) {
  for (int call = 0; call < 3; ++call) {
    start(request(ToolName::status));
    calls.advance(now);
    FakeApplication::answer(application.receiveOne(), {.ok = true});
    calls.advance(now);
  }
  EXPECT_EQ(done.size(), 3u);
  EXPECT_EQ(application.connected, 1);
}

TEST_F(BridgeCallsTest, KeepsOneConnectionOfSeveral) {
  for (int call = 0; call < 3; ++call) start(request(ToolName::status));
  calls.advance(now);
  for (const auto& received : application.receive()) FakeApplication::answer(received, {.ok = true});
  calls.advance(now);
  int open = 0;
  for (const auto& connection : application.connections) {
    char byte = 0;
    if (::recv(connection.descriptor(), &byte, 1, MSG_DONTWAIT) < 0) ++open;
  }
  EXPECT_EQ(open, 1);
}

TEST_F(BridgeCallsTest, ConnectsAnewWhenTheApplicationHasRestartedBetweenTwoCalls) {
  start(request(ToolName::status));
  calls.advance(now);
  FakeApplication::answer(application.receiveOne(), {.ok = true});
  calls.advance(now);
  application.close();
  start(command("once"));
  EXPECT_THAT(commandsThatArrive(), ElementsAre("once"));
  EXPECT_EQ(application.connected, 2);
}

// The application ends just when the call was sent on the connection that had been kept.
class RestartWhileSending : public BridgeCallsTest {
 protected:
  void SetUp() override {
    start(request(ToolName::status));
    calls.advance(now);
    FakeApplication::answer(application.receiveOne(), {.ok = true});
    calls.advance(now);
    done.clear();
  }
};

TEST_F(RestartWhileSending, RepeatsACallThatWasNeverRead) {
  start(command("once"));
  calls.advance(now);
  application.close();  // with the request unread
  EXPECT_THAT(commandsThatArrive(), ElementsAre("once"));
  EXPECT_EQ(application.connected, 2);
}

TEST_F(RestartWhileSending, RepeatsAReadingCallThatWasReadButNotAnswered) {
  start(request(ToolName::readOutput));
  calls.advance(now);
  application.receiveOne();
  application.close();
  calls.advance(now);
  FakeApplication::answer(application.receiveOne(), {.ok = true});
  calls.advance(now);
  ASSERT_EQ(done.size(), 1u);
  EXPECT_TRUE(done[0].ok);
}

TEST_F(RestartWhileSending, NeverRepeatsAChangingCallThatMayHaveTakenEffect) {
  start(command("once"));
  calls.advance(now);
  application.receiveOne();
  application.close();
  EXPECT_THAT(commandsThatArrive(), IsEmpty());
  EXPECT_EQ(
      messageOfTheOnlyFailure(),
      "Velmora closed the connection before it answered, so it is unknown whether the call took effect.");
  EXPECT_FALSE(done[0].error->retryable);
}

TEST_F(BridgeCallsTest, NeverRepeatsACallOnANewConnection) {
  start(request(ToolName::readOutput));
  calls.advance(now);
  application.close();
  calls.advance(now);
  EXPECT_EQ(messageOfTheOnlyFailure(), "Velmora closed the connection before it answered.");
  EXPECT_EQ(application.connected, 1);
}

TEST_F(BridgeCallsTest, GivesUpAtTheDeadlineAndClosesTheConnection) {
  start(command("slow"));
  commandsThatArrive();
  EXPECT_EQ(calls.nextDeadline(), now + 50s);
  now += 49s;
  calls.advance(now);
  EXPECT_THAT(done, IsEmpty());
  now += 1s;
  calls.advance(now);
  EXPECT_EQ(messageOfTheOnlyFailure(),
            "Velmora did not answer within 50 seconds, so it is unknown whether the call took effect.");
  EXPECT_TRUE(calls.awaited().empty());
  char byte = 0;
  EXPECT_EQ(::recv(application.connections.front().descriptor(), &byte, 1, MSG_DONTWAIT), 0);
}

TEST_F(BridgeCallsTest, RefusesUnsentWhatWaitsBehindACallThatMetAHangingTerminal) {
  start(command("first"));
  start(command("second"));
  start(command("other", otherSession));
  EXPECT_THAT(commandsThatArrive(), ElementsAre("first", "other"));
  now += 5s;
  FakeApplication::answer(arrived[0], {.ok = false});
  EXPECT_THAT(commandsThatArrive(), IsEmpty());
  ASSERT_EQ(done.size(), 2u);
  EXPECT_EQ(done[1].error->message, "Velmora is busy with earlier calls; this one was not sent.");
  EXPECT_TRUE(done[1].error->retryable);
  start(command("third"));
  EXPECT_THAT(commandsThatArrive(), ElementsAre("third"));
}

TEST_F(BridgeCallsTest, ASlowSuccessOrAQuickFailureRefusesNothing) {
  start(command("first"));
  start(command("second"));
  start(command("third"));
  commandsThatArrive();
  now += 30s;
  FakeApplication::answer(arrived[0], {.ok = true});
  EXPECT_THAT(commandsThatArrive(), ElementsAre("second"));
  now += 4s;
  FakeApplication::answer(arrived[1], {.ok = false});
  EXPECT_THAT(commandsThatArrive(), ElementsAre("third"));
}

TEST_F(BridgeCallsTest, ACallThatWaitsForItsEffectLetsOthersAtItsSessionOnceItsInputIsDelivered) {
  auto waiting = command("waiting");
  waiting.arguments["waitSeconds"] = 40;
  waiting.extended = true;
  start(waiting);
  start(command("interrupt"));
  start(command("third"));
  EXPECT_THAT(commandsThatArrive(), ElementsAre("waiting"));
  EXPECT_EQ(calls.nextDeadline(), now + 1s);
  now += 1s;
  EXPECT_THAT(commandsThatArrive(), ElementsAre("interrupt"));
  now += 1s;
  EXPECT_THAT(commandsThatArrive(), IsEmpty()) << "those that do not wait keep their order";
}

TEST_F(BridgeCallsTest, HearsOfProgressAndThenTakesTheAnswer) {
  auto waiting = command("waiting");
  waiting.extended = true;
  waiting.progress = true;
  std::vector<std::string> heard;
  calls.start(
      testing::bridgeRequest(waiting),
      [this](const BridgeAnswer& answer) { done.push_back(testing::recordOf(answer)); }, now,
      [&](const std::string& lastLine) { heard.push_back(lastLine); });
  calls.advance(now);
  const auto received = application.receiveOne();
  EXPECT_EQ(received.request, waiting);
  const auto tell = [&](const std::string& line) {
    received.connection->writeFrame(LocalControlCodec::frameOfPayload(
        encodeJson(LocalControlProgress{.requestId = waiting.requestId, .lastLine = line})));
  };
  tell("step 1");
  tell("step 2");
  calls.advance(now);
  EXPECT_THAT(heard, ElementsAre("step 1", "step 2"));
  EXPECT_THAT(done, IsEmpty());
  tell("step 3");
  FakeApplication::answer(received, {.ok = true, .data = JSONObject{{"a", 1.5}}});
  calls.advance(now);
  EXPECT_THAT(heard, ElementsAre("step 1", "step 2", "step 3"));
  ASSERT_EQ(done.size(), 1u);
  EXPECT_TRUE(done[0].ok);
}

TEST_F(BridgeCallsTest, NeverSendsACallThatWaitedTillItsDeadline) {
  start(command("slow"));
  start(command("second"));
  now += 1s;
  start(command("third"));
  commandsThatArrive();
  now += 49s;
  EXPECT_THAT(commandsThatArrive(), IsEmpty());
  ASSERT_EQ(done.size(), 3u) << "the third would meet the same silence";
  EXPECT_EQ(done[1].error->message, "Velmora is busy with earlier calls; this one was not sent.");
  EXPECT_TRUE(done[1].error->retryable);
}

TEST_F(BridgeCallsTest, RunsNoMoreCallsAtOnceThanAllowedAndRefusesThoseThatWouldWaitBeyondTheQueue) {
  for (int call = 0; call < 3; ++call) start(request(ToolName::status));
  calls.advance(now);
  auto running = application.receive();
  EXPECT_EQ(running.size(), 3u);
  for (int call = 0; call < 5; ++call) start(request(ToolName::status));
  calls.advance(now);
  EXPECT_EQ(application.connected, 3);
  EXPECT_EQ(messageOfTheOnlyFailure(), "Velmora is busy with earlier calls; this one was not sent.");
  FakeApplication::answer(running[1], {.ok = true});
  calls.advance(now);
  EXPECT_EQ(application.receive().size(), 1u);
}

TEST_F(BridgeCallsTest, ForgetsACancelledCall) {
  const auto running = start(request(ToolName::status));
  calls.advance(now);
  const auto received = application.receiveOne();
  calls.cancel(running);
  EXPECT_TRUE(calls.isEmpty());
  EXPECT_THROW(FakeApplication::answer(received, {.ok = true}), UnixSocketError);
  calls.advance(now);
  EXPECT_THAT(done, IsEmpty());
  calls.cancel(running);  // without effect
}

TEST_F(BridgeCallsTest, NeverSendsACallThatWasCancelledWhileItWaited) {
  start(command("first"));
  const auto second = start(command("second"));
  start(command("third"));
  commandsThatArrive();
  calls.cancel(second);
  FakeApplication::answer(arrived[0], {.ok = true});
  EXPECT_THAT(commandsThatArrive(), ElementsAre("third"));
}

TEST_F(BridgeCallsTest, DoesNotTakeAnotherCallsAnswerForItsOwn) {
  start(request(ToolName::status));
  calls.advance(now);
  const auto received = application.receiveOne();
  received.connection->writeFrame(
      LocalControlCodec::frame(LocalControlResponse{.requestId = Uuid::random(), .ok = true}));
  calls.advance(now);
  EXPECT_EQ(messageOfTheOnlyFailure(), "Velmora's answer could not be read.");
}

TEST_F(BridgeCallsTest, RefusesArgumentsThatFitNoFrameWithoutConnecting) {
  start(command(std::string(1100000, 'x')));
  calls.advance(now);
  EXPECT_EQ(messageOfTheOnlyFailure(), "The arguments are too large for one request.");
  EXPECT_EQ(application.connected, 0);
}

TEST_F(BridgeCallsTest, WritesALargeRequestInPiecesAsTheApplicationReadsIt) {
  const auto sent = command(std::string(1000000, 'x'));
  start(sent);
  calls.advance(now);
  ASSERT_EQ(calls.awaited().size(), 1u);
  EXPECT_TRUE(calls.awaited()[0].writing);
  std::string frame;
  std::vector<char> buffer(65536);
  while (frame.size() < 1000000) {
    const auto count = ::recv(application.connections.front().descriptor(), buffer.data(), buffer.size(), 0);
    ASSERT_GT(count, 0);
    frame.append(buffer.data(), static_cast<std::size_t>(count));
    calls.advance(now);
  }
  EXPECT_EQ(LocalControlCodec::decode<LocalControlRequest>(frame), sent);
  EXPECT_FALSE(calls.awaited()[0].writing);
}

TEST_F(BridgeCallsTest, PutsAnAnswerTogetherThatArrivesByteByByte) {
  start(request(ToolName::status));
  calls.advance(now);
  const auto received = application.receiveOne();
  const auto frame =
      LocalControlCodec::frame(LocalControlResponse{.requestId = received.request.requestId, .ok = true});
  for (const char byte : frame) {
    EXPECT_THAT(done, IsEmpty());
    received.connection->writeFrame({&byte, 1});
    calls.advance(now);
  }
  EXPECT_EQ(done.size(), 1u);
}

TEST_F(BridgeCallsTest, ACallStartedByTheEndOfAnotherRunsToo) {
  calls.start(
      testing::bridgeRequest(request(ToolName::status)),
      [this](const BridgeAnswer&) { start(request(ToolName::listSessions)); }, now);
  calls.advance(now);
  FakeApplication::answer(application.receiveOne(), {.ok = true});
  calls.advance(now);
  FakeApplication::answer(application.receiveOne(), {.ok = true});
  calls.advance(now);
  EXPECT_EQ(done.size(), 1u);
}

TEST_F(BridgeCallsTest, SaysThatTheApplicationSpeaksAnotherVersionOfTheChannel) {
  start(command("x"));
  commandsThatArrive();
  FakeApplication::answer(
      arrived[0], {.ok = false,
                   .error = StructuredError{.code = ErrorCode::invalidArgument,
                                            .message = "Unsupported local control protocol version."}});
  calls.advance(now);
  EXPECT_THAT(messageOfTheOnlyFailure(), ::testing::HasSubstr("another version than this helper"));
  EXPECT_EQ(done[0].error->code, ErrorCode::bridgeUnavailable);
}

}  // namespace
}  // namespace velmora
