#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/ToolInputs.h"
#include "BridgeModels/ToolPayloads.h"

namespace velmora {
namespace {

constexpr const char* onlyId = R"({"sessionId":"AAAAAAAA-0000-4000-8000-AAAAAAAAAAAA"})";

template <class Input>
std::string problemOf(const Input& input) {
  try {
    input.validate();
  } catch (const ToolValidationError& error) {
    return error.message();
  }
  return "";
}

TEST(ToolInputs, AnEmptyObjectTakesDefaultsOrFails) {
  const auto list = decodeJson<ListSessionsInput>("{}");
  EXPECT_TRUE(list.includeReadOnly);
  EXPECT_TRUE(list.includeBusy);
  const auto create = decodeJson<CreateSessionInput>("{}");
  EXPECT_EQ(create.kind, SessionCreationKind::window);
  EXPECT_EQ(create.inSessionId, std::nullopt);
  EXPECT_EQ(decodeJson<EmptyInput>(R"({"x":1})"), EmptyInput{});
  EXPECT_THROW(decodeJson<SendCommandInput>("{}"), JsonDecodeError);
  EXPECT_THROW(decodeJson<SessionTargetInput>("{}"), JsonDecodeError);
}

TEST(ToolInputs, MissingAndNullKeysTakeTheirDefaults) {
  const auto read = decodeJson<ReadOutputInput>(onlyId);
  EXPECT_EQ(read.source, OutputSource::visible);
  EXPECT_EQ(read.maxCharacters, 12000);
  const auto key = decodeJson<SendKeyInput>(
      R"({"sessionId":"aaaaaaaa-0000-4000-8000-aaaaaaaaaaaa","key":"escape","repeatCount":null})");
  EXPECT_EQ(key.repeatCount, 1);
  EXPECT_EQ(key.key, TerminalKey::escape);
}

TEST(ToolInputs, DecodingDoesNotCheckRanges) {
  EXPECT_EQ(decodeJson<ReadOutputInput>(
                R"({"sessionId":"AAAAAAAA-0000-4000-8000-AAAAAAAAAAAA","maxCharacters":-1})")
                .maxCharacters,
            -1);
}

TEST(ToolInputs, ATabIsNeverCreated) {
  constexpr auto tabMessage =
      "Terminal.app's scripting dictionary cannot create tabs; create a window instead.";
  EXPECT_EQ(problemOf(CreateSessionInput{SessionCreationKind::tab, std::nullopt}), tabMessage);
  EXPECT_EQ(problemOf(CreateSessionInput{SessionCreationKind::tab, Uuid{}}), tabMessage);
  EXPECT_EQ(problemOf(CreateSessionInput{SessionCreationKind::window, Uuid{}}),
            "inSessionId is not valid for window creation.");
  EXPECT_EQ(problemOf(CreateSessionInput{}), "");
}

TEST(ToolInputs, ACommandHasOneTo65536Bytes) {
  const auto with = [](std::string command) { return SendCommandInput{Uuid{}, std::move(command)}; };
  EXPECT_EQ(problemOf(with("")), "Command must not be empty.");
  EXPECT_EQ(problemOf(with("   ")), "");
  EXPECT_EQ(problemOf(with(std::string(65536, 'a'))), "");
  EXPECT_EQ(problemOf(with(std::string(65537, 'a'))), "Command exceeds 65536 UTF-8 bytes.");
  std::string korean;
  while (korean.size() < 65535) korean += "한";
  EXPECT_EQ(problemOf(with(korean + "a")), "");
  EXPECT_EQ(problemOf(with(korean + "é")), "Command exceeds 65536 UTF-8 bytes.");
}

TEST(ToolInputs, RangesIncludeBothEnds) {
  for (const std::int64_t count : {1, 50}) EXPECT_EQ(problemOf(SendKeyInput{.repeatCount = count}), "");
  for (const std::int64_t count : {0, 51, -1}) {
    EXPECT_EQ(problemOf(SendKeyInput{.repeatCount = count}), "repeatCount must be between 1 and 50.");
  }
  for (const std::int64_t count : {1, 50000})
    EXPECT_EQ(problemOf(ReadOutputInput{.maxCharacters = count}), "");
  for (const std::int64_t count : {0, 50001, -1}) {
    EXPECT_EQ(problemOf(ReadOutputInput{.maxCharacters = count}),
              "maxCharacters must be between 1 and 50000.");
  }
}

TEST(ToolPayloads, ConstructorsSetTheFixedValues) {
  EXPECT_EQ(CommandPayload(Uuid{}, Date{}).deliveryStatus, "delivered_to_terminal");
  EXPECT_EQ(KeyPayload(Uuid{}, TerminalKey::tab, 2, Date{}).deliveryStatus, "delivered_to_terminal");
  EXPECT_EQ(CapturePayload(Uuid{}, "/a", Date{}).mimeType, "image/png");
}

}  // namespace
}  // namespace velmora
