#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "VelmoraHelper/Bridge/AnswerWords.h"
#include "tests/VelmoraHelper/BridgeRecords.h"

namespace velmora {
namespace {

const Uuid answeredId = *Uuid::parse("11111111-2222-4333-8444-555555555555");

LocalControlResponse told(ToolName tool, const LocalControlResponse& answer) {
  const auto request = testing::bridgeRequest({.requestId = answeredId, .operation = tool});
  return testing::recordOf(explained(request, testing::bridgeAnswer(answer)));
}

// What the client of `tool` is told when the application answers with `error`.
StructuredError told(ToolName tool, const StructuredError& error) {
  return told(tool, LocalControlResponse{.requestId = answeredId, .error = error}).error.value();
}

TEST(AnswerWords, NeverAsksToRepeatWhatWasDeliveredAndOnlyNotRecorded) {
  const StructuredError unsaved{
      .code = ErrorCode::historyStorageFailed,
      .message = "History could not be saved locally.",
      .operation = "history_storage",
      .retryable = true,
      .recoverySuggestion = "Check local disk permissions and available space, then retry."};
  const auto command = told(ToolName::sendCommand, unsaved);
  EXPECT_EQ(command.code, ErrorCode::historyStorageFailed);
  EXPECT_FALSE(command.retryable);
  EXPECT_EQ(
      command.message,
      "The input was delivered; only its record could not be saved. History could not be saved locally.");
  EXPECT_TRUE(command.recoverySuggestion.starts_with("Do not send it again."));
  EXPECT_EQ(told(ToolName::readOutput, unsaved), unsaved) << "a read may be repeated";
}

TEST(AnswerWords, SayWhetherWaitingForABusySessionCanHelp) {
  StructuredError busy{.code = ErrorCode::sessionBusy,
                       .message = "The Terminal session is busy.",
                       .operation = "terminal_send_key",
                       .session = SessionReference{.sessionId = answeredId, .title = "0: python3"},
                       .retryable = true,
                       .recoverySuggestion = "Wait."};
  auto expected = busy;
  expected.recoverySuggestion =
      "Waiting helps only if what runs there ends by itself, as a build does: `busy` in "
      "terminal_list_sessions is false then. A REPL, pager, editor or ssh does not end: ask the user to quit "
      "it, or to allow input to busy sessions in Velmora's settings.";
  EXPECT_EQ(told(ToolName::sendKey, busy), expected);
  busy.message = "Someone is typing in this session.";
  EXPECT_EQ(told(ToolName::sendKey, busy), busy) << "another reason has words of its own";
}

TEST(AnswerWords, SayBrieflyThatOutputWasCut) {
  const StructuredError cut{
      .code = ErrorCode::outputTruncated,
      .message = "The output exceeded the requested character limit.",
      .operation = "terminal_read_output",
      .session = SessionReference{.sessionId = answeredId, .title = "title", .tty = "/dev/pts/1"},
      .retryable = true,
      .recoverySuggestion = "Request a larger maximum up to 50000 characters if more context is needed."};
  const auto answer = told(
      ToolName::readOutput,
      LocalControlResponse{.requestId = answeredId, .ok = true, .data = JSONObject{}, .warnings = {cut}});
  ASSERT_EQ(answer.warnings.size(), 1u);
  EXPECT_EQ(encodeJson(answer.warnings[0]),
            R"({"code":"OUTPUT_TRUNCATED","message":"Only the end is shown.",)"
            R"("operation":"terminal_read_output","retryable":true,)"
            R"("recoverySuggestion":"Raise maxCharacters, up to 50000, for more."})");
}

TEST(AnswerWords, BlameTheVersionAndNotTheRequest) {
  const auto error = told(ToolName::status, StructuredError{.code = ErrorCode::invalidArgument,
                                                            .message = unsupportedProtocolVersionMessage,
                                                            .retryable = true});
  EXPECT_EQ(error.code, ErrorCode::bridgeUnavailable);
  EXPECT_THAT(error.message, ::testing::HasSubstr("of another version than this helper"));
  EXPECT_FALSE(error.retryable);
}

}  // namespace
}  // namespace velmora
