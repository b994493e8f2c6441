#include <gtest/gtest.h>

#include <limits>
#include <unordered_set>
#include <vector>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/LocalControlMessages.h"
#include "tests/LocalControl/SocketTesting.h"
#include "tests/support/Golden.h"

namespace velmora {
namespace {

using namespace std::string_literals;

constexpr auto limit = LocalControlCodec::maximumPayloadSize;

template <class Action>
std::optional<LocalControlCodecError> codecErrorOf(Action action) {
  return errorOf<LocalControlCodecError>(action);
}
std::optional<LocalControlCodecError> payloadErrorOf(const std::string& frame) {
  return codecErrorOf([&] { LocalControlCodec::payload(frame); });
}

TEST(LocalControlCodec, AllowsPayloadsOfOneMebibyte) { EXPECT_EQ(limit, 1'048'576u); }

TEST(LocalControlCodec, WritesTheLengthMostSignificantByteFirst) {
  EXPECT_EQ(LocalControlCodec::frameOfPayload("{}"), "\0\0\0\2{}"s);
  EXPECT_EQ(LocalControlCodec::frameOfPayload(std::string(0x01'02'03, 'x')).substr(0, 4), "\0\1\2\3"s);
}

TEST(LocalControlCodec, BuildsAndReadsAPayloadOfExactlyTheLimit) {
  const std::string payload(limit, 'x');
  const auto frame = LocalControlCodec::frameOfPayload(payload);
  EXPECT_EQ(frame.size(), limit + 4);
  EXPECT_EQ(frame.substr(0, 4), "\0\x10\0\0"s);
  EXPECT_TRUE(LocalControlCodec::payload(frame) == payload);
}

TEST(LocalControlCodec, RefusesToBuildOneByteMoreThanTheLimit) {
  const std::string payload(limit + 1, 'x');
  EXPECT_EQ(codecErrorOf([&] { LocalControlCodec::frameOfPayload(payload); }),
            LocalControlCodecError::frameTooLarge);
  auto request = sampleRequest(payload);
  EXPECT_EQ(codecErrorOf([&] { LocalControlCodec::frame(request); }), LocalControlCodecError::frameTooLarge);
}

TEST(LocalControlCodec, RefusesToReadOneByteMoreThanTheLimit) {
  EXPECT_EQ(payloadErrorOf("\0\x10\0\1"s + std::string(limit + 1, 'x')),
            LocalControlCodecError::frameTooLarge);
  EXPECT_EQ(payloadErrorOf("\0\x10\0\1"s), LocalControlCodecError::frameTooLarge);
  EXPECT_EQ(payloadErrorOf("\xFF\xFF\xFF\xFF"s), LocalControlCodecError::frameTooLarge);
}

TEST(LocalControlCodec, RefusesToBuildAnEmptyFrame) {
  EXPECT_EQ(codecErrorOf([] { LocalControlCodec::frameOfPayload(""); }), LocalControlCodecError::emptyFrame);
}

TEST(LocalControlCodec, ReportsAZeroLengthAsEmptyWhateverFollows) {
  EXPECT_EQ(payloadErrorOf("\0\0\0\0"s), LocalControlCodecError::emptyFrame);
  EXPECT_EQ(payloadErrorOf("\0\0\0\0{}"s), LocalControlCodecError::emptyFrame);
}

TEST(LocalControlCodec, ReportsLessThanAHeaderAsInvalid) {
  for (const auto& frame : {""s, "\0"s, "\0\0"s, "\0\0\0"s}) {
    EXPECT_EQ(payloadErrorOf(frame), LocalControlCodecError::invalidFrame) << frame.size();
  }
}

TEST(LocalControlCodec, ReportsALengthThatDoesNotMatchAsInvalid) {
  EXPECT_EQ(payloadErrorOf("\0\0\0\x0A"s + std::string(9, ' ')), LocalControlCodecError::invalidFrame);
  EXPECT_EQ(payloadErrorOf("\0\0\0\x0A"s + std::string(11, ' ')), LocalControlCodecError::invalidFrame);
  EXPECT_EQ(payloadErrorOf("\0\0\0\x0A"s + std::string(10, ' ')), std::nullopt);
}

TEST(LocalControlCodec, ReportsAPayloadThatIsNoUtf8AsInvalid) {
  EXPECT_EQ(payloadErrorOf("\0\0\0\3\"\xFF\""s), LocalControlCodecError::invalidFrame);
  EXPECT_EQ(payloadErrorOf("\0\0\0\5\"\xED\xA0\x80\""s), LocalControlCodecError::invalidFrame);
  EXPECT_EQ(payloadErrorOf("\0\0\0\5\"\xED\x95\x9C\""s), std::nullopt);
}

TEST(LocalControlCodec, ReadsARequestBackAsItWas) {
  const auto request = sampleRequest("echo 한글 \"quoted\" \\ \x01");
  EXPECT_EQ(LocalControlCodec::decode<LocalControlRequest>(LocalControlCodec::frame(request)), request);
}

TEST(LocalControlCodec, ReadsAResponseBackAsItWas) {
  auto response = sampleResponse();
  response.warnings = {
      {ErrorCode::outputTruncated, "Cut.", "terminal_read_output", std::nullopt, false, "None."}};
  response.error = StructuredError{ErrorCode::mcpPaused,
                                   "Paused.",
                                   "terminal_status",
                                   SessionReference{Uuid::random(), "zsh", std::nullopt},
                                   true,
                                   "Resume."};
  EXPECT_EQ(LocalControlCodec::decode<LocalControlResponse>(LocalControlCodec::frame(response)), response);
}

TEST(LocalControlCodec, PassesTheEncodersErrorOn) {
  auto request = sampleRequest();
  request.arguments["x"] = std::numeric_limits<double>::infinity();
  EXPECT_THROW(LocalControlCodec::frame(request), JsonEncodeError);
}

TEST(LocalControlCodec, PassesTheDecodersErrorOn) {
  EXPECT_THROW(LocalControlCodec::decode<LocalControlRequest>("\0\0\0\2{}"s), JsonDecodeError);
  EXPECT_THROW(LocalControlCodec::decode<LocalControlRequest>("\0\0\0\2{]"s), JsonDecodeError);
}

TEST(LocalControlCodecError, IsAValueWithEqualityAndHashing) {
  using Error = LocalControlCodecError;
  const std::unordered_set<Error> errors{Error::emptyFrame, Error::frameTooLarge, Error::invalidFrame,
                                         Error::emptyFrame};
  EXPECT_EQ(errors.size(), 3u);
  EXPECT_TRUE(Error(Error::emptyFrame) == Error(Error::emptyFrame));
  EXPECT_FALSE(Error(Error::emptyFrame) == Error(Error::invalidFrame));
  EXPECT_LT(Error::emptyFrame, Error::frameTooLarge);
  EXPECT_LT(Error::frameTooLarge, Error::invalidFrame);
}

TEST(LocalControlCodecError, NamesItsCaseForLogs) {
  using Error = LocalControlCodecError;
  EXPECT_STREQ(Error(Error::emptyFrame).what(), "emptyFrame");
  EXPECT_STREQ(Error(Error::frameTooLarge).what(), "frameTooLarge");
  EXPECT_STREQ(Error(Error::invalidFrame).what(), "invalidFrame");
}

TEST(LocalControlRequest, MatchesItsGoldenFrame) {
  const auto golden = contentsOf(VELMORA_TEST_DATA "/local-control/request.frame");
  EXPECT_EQ(LocalControlCodec::frame(sampleRequest()), golden);
  EXPECT_EQ(LocalControlCodec::decode<LocalControlRequest>(golden), sampleRequest());
}

TEST(LocalControlRequest, IsPinnedForEveryTool) {
  const std::string id = "7C9E6679-7425-40DE-944B-E07FC1F90AE7";
  const JSONObject target{{"sessionId", id}};
  const std::vector<std::pair<ToolName, JSONObject>> calls{
      {ToolName::status, {}},
      {ToolName::listSessions, {{"includeBusy", false}, {"includeReadOnly", true}}},
      {ToolName::getActiveSession, {}},
      {ToolName::createSession, {{"kind", "window"}}},
      {ToolName::sendCommand,
       {{"command", "echo '한글 👩‍👩‍👧' \"q\" \\\n"}, {"sessionId", id}}},
      {ToolName::sendKey, {{"key", "return"}, {"repeatCount", 2}, {"sessionId", id}}},
      {ToolName::readOutput, {{"maxCharacters", 3}, {"sessionId", id}, {"source", "history"}}},
      {ToolName::captureScreen, target},
      {ToolName::focusSession, target},
  };
  ASSERT_EQ(calls.size(), enumCases<ToolName>.size());
  for (const auto& [tool, arguments] : calls) {
    auto request = sampleRequest();
    request.operation = tool;
    request.arguments = arguments;
    const auto text = encodeJson(request);
    testing::expectGolden("requests/" + std::string(wireName(tool)) + ".json", text);
    EXPECT_EQ(decodeJson<LocalControlRequest>(text), request);
  }
}

TEST(LocalControlResponse, MatchesItsGoldenFrame) {
  const auto golden = contentsOf(VELMORA_TEST_DATA "/local-control/response.frame");
  EXPECT_EQ(LocalControlCodec::frame(sampleResponse()), golden);
  EXPECT_EQ(LocalControlCodec::decode<LocalControlResponse>(golden), sampleResponse());
}

TEST(LocalControlRequest, NeedsArguments) {
  const auto text = [](const std::string& arguments) {
    return R"({"protocolVersion":1,"requestId":"0f8fad5b-d9cb-469f-a165-70867728950e",)"s +
           R"("client":{"name":"a","processId":1},"operation":"terminal_status")" + arguments + "}";
  };
  const auto decoded = [](const std::string& payload) {
    return LocalControlCodec::decode<LocalControlRequest>(LocalControlCodec::frameOfPayload(payload));
  };
  EXPECT_THROW(decoded(text("")), JsonDecodeError);
  EXPECT_THROW(decoded(text(R"(,"arguments":null)")), JsonDecodeError);
  EXPECT_THROW(decoded(text(R"(,"arguments":[])")), JsonDecodeError);
  EXPECT_EQ(decoded(text(R"(,"arguments":{})")).arguments, JSONObject{});
  EXPECT_EQ(decoded(text(R"(,"arguments":{},"later":1)")).client.version, std::nullopt);
}

TEST(LocalControlRequest, LeavesAnAbsentClientVersionOut) {
  auto request = sampleRequest();
  request.client.version.reset();
  EXPECT_NE(encodeJson(request).find(R"("client":{"name":"Agent","processId":4711})"), std::string::npos);
}

TEST(LocalControlResponse, WritesEmptyWarningsAndNoErrorKey) {
  LocalControlResponse response;
  response.requestId = sampleRequest().requestId;
  response.ok = true;
  EXPECT_EQ(encodeJson(response),
            R"({"requestId":"0F8FAD5B-D9CB-469F-A165-70867728950E","ok":true,"warnings":[]})");
}

}  // namespace
}  // namespace velmora
