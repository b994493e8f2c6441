#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlRouter.h"
#include "VelmoraApp/Help/HelpToolCalls.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

using testing::numberedUuid;

// The call as data; its arguments stand in it as they are sent.
struct Call {
  std::string name{};
  JSONObject arguments{};
};
BOOST_DESCRIBE_STRUCT(Call, (), (name, arguments))

struct Expected {
  ToolName tool;
  JSONObject arguments;
};

const std::string id(sessionIdPlaceholder);

const std::vector<Expected> expectedCalls{
    {ToolName::status, {}},
    {ToolName::createSession, {{"kind", "window"}}},
    {ToolName::sendCommand, {{"sessionId", id}, {"command", "pwd"}}},
    {ToolName::sendKey, {{"sessionId", id}, {"key", "upArrow"}}},
    {ToolName::readOutput, {{"sessionId", id}, {"source", "visible"}, {"maxCharacters", 12000}}},
    {ToolName::focusSession, {{"sessionId", id}}},
};

class HelpToolCallsTest : public testing::AppFixture {};

TEST_F(HelpToolCallsTest, AreJSONOfANameAndArguments) {
  for (const auto& expected : expectedCalls) {
    const auto text = exampleToolCall(expected.tool);
    const auto call = decodeJson<Call>(text);
    EXPECT_EQ(call.name, wireName(expected.tool));
    EXPECT_EQ(call.arguments, expected.arguments) << text;
    EXPECT_LT(text.find("\"name\""), text.find("\"arguments\"")) << "in the order in which one reads";
  }
}

TEST_F(HelpToolCallsTest, WorkOnceTheSessionIsPutIn) {
  startApp();
  LocalControlRouter router(app->coordinator());
  for (const auto& expected : expectedCalls) {
    auto call = decodeJson<Call>(exampleToolCall(expected.tool));
    if (const auto found = call.arguments.find("sessionId"); found != call.arguments.end()) {
      found->second = app->sessions().at(0).sessionId.toString();
    }
    const auto response = router.route({.requestId = numberedUuid(900),
                                        .client = {"test", std::nullopt, 1},
                                        .operation = expected.tool,
                                        .arguments = call.arguments});
    EXPECT_TRUE(response.ok) << call.name << ": " << (response.error ? response.error->message : "");
  }
}

TEST_F(HelpToolCallsTest, ExistForNoOtherTool) {
  for (const auto tool : {ToolName::listSessions, ToolName::getActiveSession, ToolName::captureScreen}) {
    EXPECT_THROW(exampleToolCall(tool), std::invalid_argument);
  }
}

}  // namespace
}  // namespace velmora
