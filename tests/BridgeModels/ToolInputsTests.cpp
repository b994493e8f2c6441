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

TEST(ToolInputs, AWishedWindowHasANameADirectoryAndASizeInRange) {
  const auto problem = [](const std::string& arguments) {
    return problemOf(decodeJson<CreateSessionInput>(arguments));
  };
  EXPECT_EQ(problem(R"({"name":"a_B-9","directory":"/x y","columns":20,"rows":200})"), "");
  for (const auto* name : {R"({"name":""})", R"({"name":"-a"})", R"({"name":"a.b"})", R"({"name":"a:b"})"})
    EXPECT_EQ(problem(name).substr(0, 12), "name must be") << name;
  EXPECT_EQ(problem(R"({"directory":"x"})"), "directory must be an absolute path.");
  EXPECT_EQ(problem(R"({"columns":501})"), "columns must be between 20 and 500.");
  EXPECT_EQ(problem(R"({"rows":4})"), "rows must be between 5 and 200.");
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

TEST(ToolInputsTest, AReadWaitsForOneThing) {
  const auto problem = [](ReadOutputInput input) { return problemOf(input); };
  EXPECT_EQ(problem({.waitSeconds = 0}), "");
  EXPECT_EQ(problem({.waitSeconds = 45}), "");
  EXPECT_EQ(problem({.waitSeconds = 1, .until = ReadUntil::change}), "");
  EXPECT_EQ(problem({.waitSeconds = 1, .until = ReadUntil::text, .waitText = "$ "}), "");
  for (const std::int64_t seconds : {-1, 46})
    EXPECT_EQ(problem({.waitSeconds = seconds}), "waitSeconds must be between 0 and 45.");
  EXPECT_EQ(problem({.until = ReadUntil::idle}), "until needs waitSeconds, 1 to 45.");
  EXPECT_EQ(problem({.waitSeconds = 0, .until = ReadUntil::change}), "until needs waitSeconds, 1 to 45.");
  EXPECT_EQ(problem({.waitSeconds = 1, .until = ReadUntil::text}), "until \"text\" needs waitText.");
  EXPECT_EQ(problem({.waitSeconds = 1, .waitText = "a"}), "waitText needs until \"text\".");
  EXPECT_EQ(problem({.waitSeconds = 1, .until = ReadUntil::idle, .waitText = "a"}),
            "waitText needs until \"text\".");
  for (const auto& text : {std::string(), std::string("a\nb"), std::string("a\r"), std::string(1001, 'a')})
    EXPECT_EQ(problem({.waitSeconds = 1, .until = ReadUntil::text, .waitText = text}),
              "waitText must be one line of 1 to 1000 bytes.");
}

TEST(ToolPayloads, ConstructorsSetTheFixedValues) {
  EXPECT_EQ(CommandPayload(Uuid{}, Date{}).deliveryStatus, "delivered_to_terminal");
  EXPECT_EQ(KeyPayload(Uuid{}, TerminalKey::tab, 2, Date{}).deliveryStatus, "delivered_to_terminal");
  EXPECT_EQ(CapturePayload(Uuid{}, "/a", Date{}).mimeType, "image/png");
}

}  // namespace
}  // namespace velmora
