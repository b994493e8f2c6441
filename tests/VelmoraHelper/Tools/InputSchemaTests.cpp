#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/Tools/ToolSchemas.h"
#include "tests/VelmoraHelper/Tools/SchemaCheck.h"

namespace velmora {
namespace {

#define ID R"("sessionId":"0F8FAD5B-D9CB-469F-A165-70867728950E")"

template <class Input>
std::string schemaText() {
  JsonWriter writer(JsonFormat::wire);
  writeInputSchema<Input>(writer);
  return writer.take();
}

template <class Input>
bool schemaAccepts(const std::string& arguments) {
  return testing::schemaAccepts(parseJson(schemaText<Input>()).as_object(), parseJson(arguments));
}

// Whether the application takes the arguments: they decode, and they are in range.
template <class Input>
bool applicationAccepts(const std::string& arguments) {
  try {
    const auto input = decodeJson<Input>(arguments);
    if constexpr (requires { input.validate(); }) input.validate();
    return true;
  } catch (const JsonDecodeError&) {
    return false;
  } catch (const ToolValidationError&) {
    return false;
  }
}

template <class Input>
void expectBoth(bool accepted, std::initializer_list<const char*> examples) {
  for (const std::string arguments : examples) {
    EXPECT_EQ(schemaAccepts<Input>(arguments), accepted) << "schema: " << arguments;
    EXPECT_EQ(applicationAccepts<Input>(arguments), accepted) << "application: " << arguments;
  }
}

TEST(InputSchema, OfNoFieldsAllowsOnlyTheEmptyObject) {
  EXPECT_EQ(schemaText<EmptyInput>(), R"({"type":"object","additionalProperties":false})");
}

TEST(InputSchema, NamesTypesEnumsDefaultsRangesAndRequiredFields) {
  const auto schema = parseJson(schemaText<SendKeyInput>());
  const auto& properties = schema.at("properties").as_object();
  EXPECT_EQ(schema.at("type"), "object");
  EXPECT_EQ(schema.at("additionalProperties"), false);
  EXPECT_EQ(schema.at("required"), (boost::json::array{"sessionId", "key"}));
  EXPECT_EQ(properties.size(), 3u);
  EXPECT_EQ(properties.at("sessionId").at("format"), "uuid");
  EXPECT_EQ(properties.at("key").at("enum"),
            (boost::json::array{"upArrow", "downArrow", "leftArrow", "rightArrow", "return", "escape", "tab",
                                "delete", "forwardDelete", "home", "end", "pageUp", "pageDown"}));
  EXPECT_FALSE(properties.at("key").as_object().contains("default"));
  EXPECT_EQ(properties.at("repeatCount").at("type"), "integer");
  EXPECT_EQ(properties.at("repeatCount").at("minimum"), 1);
  EXPECT_EQ(properties.at("repeatCount").at("maximum"), 50);
  EXPECT_EQ(properties.at("repeatCount").at("default"), 1);
}

TEST(InputSchema, WritesTheDefaultsOfTheInputs) {
  const auto list = parseJson(schemaText<ListSessionsInput>());
  EXPECT_EQ(list.at("properties").at("includeReadOnly").at("default"), true);
  EXPECT_EQ(list.at("properties").at("includeBusy").at("default"), true);
  EXPECT_FALSE(list.as_object().contains("required"));
  const auto create = parseJson(schemaText<CreateSessionInput>());
  EXPECT_EQ(create.at("properties").at("kind").at("default"), "window");
  EXPECT_EQ(create.at("properties").at("kind").at("enum"), (boost::json::array{"window", "tab"}));
  EXPECT_FALSE(create.at("properties").at("inSessionId").as_object().contains("default"));
  EXPECT_FALSE(create.as_object().contains("required"));
  const auto read = parseJson(schemaText<ReadOutputInput>());
  EXPECT_EQ(read.at("properties").at("source").at("default"), "visible");
  EXPECT_EQ(read.at("properties").at("maxCharacters").at("default"), 12000);
  EXPECT_EQ(read.at("properties").at("maxCharacters").at("maximum"), 50000);
}

TEST(InputSchema, AcceptsWhatTheApplicationAccepts) {
  expectBoth<EmptyInput>(true, {"{}"});
  expectBoth<SessionTargetInput>(true,
                                 {"{" ID "}", R"({"sessionId":"0f8fad5b-d9cb-469f-a165-70867728950e"})"});
  expectBoth<ListSessionsInput>(true, {"{}", R"({"includeBusy":false})", R"({"includeReadOnly":true})"});
  expectBoth<CreateSessionInput>(true, {"{}", R"({"kind":"window"})"});
  expectBoth<SendCommandInput>(true, {"{" ID R"(,"command":"ls"})", "{" ID R"(,"command":" "})"});
  expectBoth<SendKeyInput>(
      true, {"{" ID R"(,"key":"return"})", "{" ID R"(,"key":"delete","repeatCount":1})",
             "{" ID R"(,"key":"pageUp","repeatCount":50})", "{" ID R"(,"key":"pageUp","repeatCount":2.0})"});
  expectBoth<ReadOutputInput>(true, {"{" ID "}", "{" ID R"(,"source":"history","maxCharacters":1})",
                                     "{" ID R"(,"source":"visible","maxCharacters":50000})"});
}

TEST(InputSchema, RefusesWhatTheApplicationRefuses) {
  expectBoth<SessionTargetInput>(false, {"{}", "[]", R"({"sessionId":1})", R"({"sessionId":"x"})",
                                         R"({"sessionId":"0F8FAD5BD9CB469FA16570867728950E"})",
                                         R"({"sessionId":"0F8FAD5B-D9CB-469F-A165-70867728950E "})",
                                         R"({"sessionId":"G F8FAD5-D9CB-469F-A165-70867728950E"})"});
  expectBoth<ListSessionsInput>(false, {R"({"includeBusy":1})", R"({"includeReadOnly":"true"})"});
  expectBoth<CreateSessionInput>(false,
                                 {R"({"kind":"Window"})", R"({"kind":true})", R"({"inSessionId":"x"})"});
  expectBoth<SendCommandInput>(false, {"{}", "{" ID "}", R"({"command":"ls"})", "{" ID R"(,"command":""})",
                                       "{" ID R"(,"command":["ls"]})"});
  expectBoth<SendKeyInput>(
      false, {"{" ID "}", "{" ID R"(,"key":"Escape"})", "{" ID R"(,"key":"return_"})",
              "{" ID R"(,"key":"tab","repeatCount":0})", "{" ID R"(,"key":"tab","repeatCount":51})",
              "{" ID R"(,"key":"tab","repeatCount":1.5})", "{" ID R"(,"key":"tab","repeatCount":"2"})"});
  expectBoth<ReadOutputInput>(false,
                              {"{}", "{" ID R"(,"source":"all"})", "{" ID R"(,"maxCharacters":0})",
                               "{" ID R"(,"maxCharacters":50001})", "{" ID R"(,"maxCharacters":true})"});
}

TEST(InputSchema, RefusesUnknownKeysThoughTheApplicationIgnoresThem) {
  EXPECT_FALSE(schemaAccepts<EmptyInput>(R"({"x":1})"));
  EXPECT_FALSE(schemaAccepts<SessionTargetInput>("{" ID R"(,"x":1})"));
  EXPECT_TRUE(applicationAccepts<SessionTargetInput>("{" ID R"(,"x":1})"));
}

TEST(InputSchema, EveryFieldHasADescriptionThatNamesTheLimitWhichASchemaCannotHold) {
  EXPECT_NE(fieldRule("command").description.find("65,536 bytes"), std::string_view::npos);
  EXPECT_THROW(fieldRule("nothing"), std::logic_error);
}

}  // namespace
}  // namespace velmora
