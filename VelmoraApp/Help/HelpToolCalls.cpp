#include "VelmoraApp/Help/HelpToolCalls.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/ToolInputs.h"

namespace velmora {

namespace {

struct ToolCall {
  ToolName tool;
  void (*writeArguments)(JsonWriter&);
};

void writeSession(JsonWriter& arguments) { writeMember(arguments, "sessionId", sessionIdPlaceholder); }

// In the order of the sections.
constexpr auto toolCalls = std::to_array<ToolCall>({
    {ToolName::status, [](JsonWriter&) {}},
    {ToolName::createSession,
     [](JsonWriter& arguments) { writeMember(arguments, "kind", SessionCreationKind::window); }},
    {ToolName::sendCommand,
     [](JsonWriter& arguments) {
       writeSession(arguments);
       writeMember(arguments, "command", "pwd");
     }},
    {ToolName::sendKey,
     [](JsonWriter& arguments) {
       writeSession(arguments);
       writeMember(arguments, "key", TerminalKey::upArrow);
     }},
    {ToolName::readOutput,
     [](JsonWriter& arguments) {
       writeSession(arguments);
       writeMember(arguments, "source", OutputSource::visible);
       writeMember(arguments, "maxCharacters", 12000);
     }},
    {ToolName::focusSession, writeSession},
});

}  // namespace

std::string exampleToolCall(ToolName tool) {
  const auto* const found = std::find_if(toolCalls.begin(), toolCalls.end(),
                                         [tool](const ToolCall& call) { return call.tool == tool; });
  if (found == toolCalls.end())
    throw std::invalid_argument("no example call of " + std::string(wireName(tool)));
  JsonWriter call(JsonFormat::store);
  call.beginObject();
  writeMember(call, "name", wireName(tool));
  call.key("arguments");
  call.beginObject();
  found->writeArguments(call);
  call.endObject();
  call.endObject();
  return call.take();
}

}  // namespace velmora
