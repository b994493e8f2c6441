#include <gtest/gtest.h>

#include "tests/VelmoraHelper/BridgeRecords.h"

namespace velmora {
namespace {

using testing::bridgeRequest;

TEST(BridgeMessages, ARequestIsWrittenAsTheRecordIs) {
  const LocalControlRequest record{
      .requestId = Uuid::random(),
      .client = {.name = "tester", .version = "2", .processId = 42},
      .operation = ToolName::sendKey,
      .arguments = {
          {"key", "home"}, {"b", JSONArray{1, 1.5, nullptr}}, {"a", JSONObject{{"z", true}, {"y", "x"}}}}};
  const auto request = bridgeRequest(record);
  EXPECT_EQ(request.payload, encodeJson(record));
  EXPECT_EQ(request.id, record.requestId);
  EXPECT_EQ(request.tool, ToolName::sendKey);
}

TEST(BridgeMessages, OnlyCallsThatChangeASessionHaveALane) {
  const auto laneOf = [](ToolName tool, const JSONValue& session) {
    return bridgeRequest({.operation = tool, .arguments = {{"sessionId", session}}}).lane;
  };
  EXPECT_EQ(laneOf(ToolName::sendCommand, "aB-1"), "AB-1");
  EXPECT_EQ(laneOf(ToolName::sendCommand, 7), "");
  EXPECT_EQ(laneOf(ToolName::readOutput, "aB-1"), "");
  EXPECT_EQ(bridgeRequest({.operation = ToolName::createSession}).lane, "");
}

TEST(BridgeMessages, AnAnswerKeepsADocumentOfItsOwn) {
  const LocalControlResponse record{
      .requestId = Uuid::random(),
      .ok = true,
      .data = JSONObject{{"deliveredAt", 1.5}, {"ofANewerVersion", JSONArray{JSONObject{}}}},
      .warnings = {StructuredError{.message = "m"}}};
  auto answer = testing::bridgeAnswer(record);
  const auto copy = answer;
  answer = testing::bridgeAnswer({.requestId = record.requestId});
  EXPECT_EQ(testing::recordOf(copy), record);
  EXPECT_FALSE(answer.result.data);
}

TEST(BridgeMessages, AnAnswerThatIsNoResponseIsRefused) {
  EXPECT_THROW(BridgeAnswer("\0\0\0\2{}"), LocalControlCodecError);
  EXPECT_THROW(BridgeAnswer(LocalControlCodec::frameOfPayload("{}")), JsonDecodeError);
}

}  // namespace
}  // namespace velmora
