#include "VelmoraHelper/Commands/CallCommand.h"

#include <unistd.h>

#include <array>
#include <istream>
#include <ostream>
#include <vector>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/ToolInputs.h"
#include "LocalControl/LocalControlCodec.h"
#include "System/Utf8.h"
#include "VelmoraHelper/Bridge/CallFailure.h"
#include "VelmoraHelper/Commands/Deadline.h"
#include "VelmoraHelper/Commands/NearestName.h"
#include "VelmoraHelper/Tools/DatesForPeople.h"

namespace velmora {

namespace {

// The application gives up on a terminal long before.
constexpr std::chrono::seconds callDeadline{60};

// No argument that is larger fits a request.
std::string readAll(std::istream& in) {
  std::string text;
  std::array<char, 65536> block{};
  while (text.size() <= LocalControlCodec::maximumPayloadSize && in) {
    in.read(block.data(), block.size());
    text.append(block.data(), static_cast<std::size_t>(in.gcount()));
  }
  return text;
}

std::string unknownTool(const std::string& typed) {
  std::vector<std::string_view> names;
  names.reserve(enumCases<ToolName>.size());
  for (const auto& entry : enumCases<ToolName>) names.push_back(entry.wireName);
  const auto nearest = nearestName(typed, names, "terminal_");
  std::string text = "there is no tool \"" + plainText(typed) + "\"";
  if (nearest) return text + didYouMean(nearest);
  text += "; the tools are:";
  for (const auto name : names) text.append("\n  ").append(name);
  return text;
}

template <class Input>
std::string problemOf(const std::string& json) {
  try {
    decodeJson<Input>(json);
  } catch (const JsonDecodeError& error) {
    return error.what();
  }
  return {};
}

// Which argument the application could not decode: it says only that one could not be.
std::string problemOf(ToolName tool, const std::string& json) {
  switch (tool) {
    case ToolName::status:
    case ToolName::getActiveSession:
      return {};
    case ToolName::listSessions:
      return problemOf<ListSessionsInput>(json);
    case ToolName::createSession:
      return problemOf<CreateSessionInput>(json);
    case ToolName::sendCommand:
      return problemOf<SendCommandInput>(json);
    case ToolName::sendKey:
      return problemOf<SendKeyInput>(json);
    case ToolName::readOutput:
      return problemOf<ReadOutputInput>(json);
    case ToolName::captureScreen:
    case ToolName::focusSession:
      return problemOf<SessionTargetInput>(json);
  }
  return {};
}

ExitStatus refuse(const CommandContext& context, const std::string& problem) {
  context.err << "velmora: " << problem << '\n';
  return ExitStatus::usage;
}

}  // namespace

LocalControlResponse answerOf(const CommandContext& context, ToolName tool, JSONObject arguments,
                              std::chrono::milliseconds deadline) {
  const auto bridge = [&](const LocalControlRequest& request) {
    try {
      return context.bridge(request, deadline);
    } catch (const DeadlinePassed&) {
      return answerToSilence(request, std::chrono::ceil<std::chrono::seconds>(deadline));
    }
  };
  return ToolCaller(bridge, Uuid::random)
      .call(tool, std::move(arguments),
            {.name = "velmora command line", .version = context.version, .processId = ::getpid()});
}

void explain(const CommandContext& context, const StructuredError& error) {
  context.err << "velmora: " << plainText(error.message) << " (" << wireName(error.code) << ")\n"
              << plainText(error.recoverySuggestion) << '\n';
}

ExitStatus callTool(const CommandContext& context, const std::string& name, const std::string& json) {
  const auto tool = fromWireName<ToolName>(name);
  if (!tool) return refuse(context, unknownTool(name));
  const auto text = json == "-" ? readAll(context.in) : json;
  JSONValue arguments;
  try {
    arguments = decodeJson<JSONValue>(text);
  } catch (const JsonDecodeError& error) {
    return refuse(context, std::string("the arguments: ") + error.what() +
                               "\nWrite them as one word of the shell, such as '{\"includeBusy\": false}'.");
  }
  const auto* const object = arguments.object();
  if (object == nullptr)
    return refuse(context, "the arguments must be a JSON object, such as {\"key\": \"tab\"}");

  auto response = answerOf(context, *tool, *object, callDeadline);
  for (const auto& warning : response.warnings) explain(context, warning);
  if (response.ok) {
    auto payload = response.data.value_or(JSONObject{});
    writeDatesForPeople(payload);
    context.out << encodeJson(payload, JsonFormat::store) << '\n';
    return ExitStatus::success;
  }
  const auto error = response.error.value_or(StructuredError{.message = "The call failed."});
  explain(context, error);
  if (error.code == ErrorCode::invalidArgument) {
    if (const auto problem = problemOf(*tool, text); !problem.empty())
      context.err << plainText(problem) << '\n';
  }
  return ExitStatus::failure;
}

}  // namespace velmora
