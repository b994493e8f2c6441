#include <gtest/gtest.h>

#include <cerrno>

#include "LocalControl/UnixSocketError.h"
#include "VelmoraHelper/Bridge/CallFailure.h"
#include "tests/VelmoraHelper/BridgeRecords.h"

namespace velmora {
namespace {

const Uuid failedId = *Uuid::parse("11111111-2222-4333-8444-555555555555");

// The answer to a call of `tool` when the application cannot be asked because of `failure`.
template <class Failure>
LocalControlResponse answerWhen(ToolName tool, Failure failure, JSONObject arguments = {}) {
  const auto request =
      testing::bridgeRequest({.requestId = failedId, .operation = tool, .arguments = std::move(arguments)});
  return testing::recordOf(answerToFailure(request, std::make_exception_ptr(failure)));
}

TEST(CallFailure, SaysThatVelmoraIsNotRunningWhenNothingListens) {
  for (const int code : {ENOENT, ECONNREFUSED}) {
    const auto response = answerWhen(ToolName::sendCommand, UnixSocketError::system("connect", code));
    const StructuredError expected{
        .code = ErrorCode::bridgeUnavailable,
        .message = "Velmora is not running.",
        .operation = "terminal_send_command",
        .retryable = true,
        .recoverySuggestion = "Open Velmora (or start velmora-headless), then retry."};
    EXPECT_EQ(response, (LocalControlResponse{.requestId = failedId, .ok = false, .error = expected}));
  }
}

TEST(CallFailure, NamesTheReasonWhenTheSocketCannotBeReachedOtherwise) {
  const auto response = answerWhen(ToolName::status, UnixSocketError::system("connect", ENOTSOCK));
  EXPECT_EQ(response.error->code, ErrorCode::bridgeUnavailable);
  EXPECT_EQ(response.error->message,
            "Velmora could not be reached: connect failed (Socket operation on non-socket).");
  const auto crowded = answerWhen(ToolName::status, UnixSocketError::system("connect", EAGAIN));
  EXPECT_EQ(crowded.error->message, "Velmora is running but accepts no more connections.");
}

TEST(CallFailure, RefusesAnUnsafeSocketAndAnotherUsersApplication) {
  const auto unsafe = answerWhen(ToolName::status, UnixSocketError::unsafeEndpoint());
  EXPECT_EQ(unsafe.error->code, ErrorCode::bridgeUnavailable);
  EXPECT_NE(unsafe.error->message.find("not safe"), std::string::npos);
  const auto rejected = answerWhen(ToolName::status, UnixSocketError::peerRejected());
  EXPECT_EQ(rejected.error->code, ErrorCode::bridgeUnavailable);
  EXPECT_EQ(rejected.error->message, "Velmora's control socket is served by another user.");
  for (const int code : {EACCES, EPERM}) {
    const auto closed = answerWhen(ToolName::status, UnixSocketError::system("connect", code));
    EXPECT_EQ(closed.error->message, "Velmora's control socket belongs to another user.");
    EXPECT_EQ(closed.error->recoverySuggestion, rejected.error->recoverySuggestion);
  }
}

TEST(CallFailure, SaysThatTheOutcomeOfAChangingCallIsUnknownWhenTheConnectionBreaks) {
  for (const auto& failure : {UnixSocketError::disconnected(), UnixSocketError::system("write", EPIPE)}) {
    for (const auto tool :
         {ToolName::createSession, ToolName::sendCommand, ToolName::sendKey, ToolName::focusSession}) {
      const auto response = answerWhen(tool, failure);
      EXPECT_EQ(response.error->code, ErrorCode::bridgeUnavailable);
      EXPECT_EQ(
          response.error->message,
          "Velmora closed the connection before it answered, so it is unknown whether the call took effect.");
      EXPECT_EQ(response.error->recoverySuggestion,
                "Make sure that Velmora is open and read the session's output before you retry.");
      EXPECT_EQ(response.error->operation, wireName(tool));
      EXPECT_FALSE(response.error->retryable);
    }
  }
}

TEST(CallFailure, LeavesTheOutcomeOutWhenAReadingCallIsCutOff) {
  const auto response = answerWhen(ToolName::readOutput, UnixSocketError::disconnected());
  EXPECT_EQ(response.error->message, "Velmora closed the connection before it answered.");
  EXPECT_EQ(response.error->recoverySuggestion, "Open Velmora (or start velmora-headless), then retry.");
}

TEST(CallFailure, ReportsAnAnswerThatCannotBeRead) {
  const auto frame =
      answerWhen(ToolName::status, LocalControlCodecError(LocalControlCodecError::invalidFrame));
  EXPECT_EQ(frame.error->message, "Velmora's answer could not be read.");
  const auto record = answerWhen(ToolName::sendKey, JsonDecodeError("ok: missing"));
  EXPECT_EQ(record.error->message,
            "Velmora's answer could not be read, so it is unknown whether the call took effect.");
  const auto large =
      answerWhen(ToolName::status, LocalControlCodecError(LocalControlCodecError::frameTooLarge));
  EXPECT_EQ(large.error->code, ErrorCode::bridgeUnavailable);
}

TEST(CallFailure, BlamesTheArgumentsWhenTheyDoNotFitARequest) {
  const std::string command(LocalControlCodec::maximumPayloadSize, 'x');
  const auto response =
      answerWhen(ToolName::sendCommand, LocalControlCodecError(LocalControlCodecError::frameTooLarge),
                 {{"command", command}});
  EXPECT_EQ(response.error->code, ErrorCode::invalidArgument);
  EXPECT_EQ(response.error->message, "The arguments are too large for one request.");
  EXPECT_FALSE(response.error->retryable);
}

TEST(CallFailure, PassesOnWhatIsNoFailureOfTheChannel) {
  EXPECT_THROW(answerWhen(ToolName::status, std::bad_alloc()), std::bad_alloc);
}

}  // namespace
}  // namespace velmora
