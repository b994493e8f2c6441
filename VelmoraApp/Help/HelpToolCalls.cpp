#include "VelmoraApp/Help/HelpToolCalls.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "BridgeModels/WireNames.h"

namespace velmora {

namespace {

struct ToolCall {
  ToolName tool;
  std::string_view arguments;
};

// In the order of the sections.
constexpr auto toolCalls = std::to_array<ToolCall>({
    {ToolName::status, "{}"},
    {ToolName::createSession, R"({
    "kind": "window"
  })"},
    {ToolName::sendCommand, R"({
    "sessionId": "SESSION_ID_FROM_CREATE_RESPONSE",
    "command": "pwd"
  })"},
    {ToolName::sendKey, R"({
    "sessionId": "SESSION_ID_FROM_CREATE_RESPONSE",
    "key": "upArrow"
  })"},
    {ToolName::readOutput, R"({
    "sessionId": "SESSION_ID_FROM_CREATE_RESPONSE",
    "source": "visible",
    "maxCharacters": 12000
  })"},
    {ToolName::focusSession, R"({
    "sessionId": "SESSION_ID_FROM_CREATE_RESPONSE"
  })"},
});

}  // namespace

std::string exampleToolCall(ToolName tool) {
  const auto* const found = std::find_if(toolCalls.begin(), toolCalls.end(),
                                         [tool](const ToolCall& call) { return call.tool == tool; });
  if (found == toolCalls.end())
    throw std::invalid_argument("no example call of " + std::string(wireName(tool)));
  return "{\n  \"name\": \"" + std::string(wireName(tool)) +
         "\",\n  \"arguments\": " + std::string(found->arguments) + "\n}";
}

}  // namespace velmora
