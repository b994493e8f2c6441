#include "VelmoraHelper/Commands/CallCommand.h"

#include <unistd.h>

#include <array>
#include <istream>
#include <ostream>
#include <vector>

#include "BridgeModels/Json/JsonAs.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/Tools.h"
#include "LocalControl/LocalControlCodec.h"
#include "System/Utf8.h"
#include "VelmoraHelper/Tools/ArgumentCheck.h"
#include "VelmoraHelper/Tools/NearestName.h"

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

// The payload as the user reads it.
std::string printed(ToolName tool, const ToolResult<JsonPart>& result) {
  auto format = JsonFormat::people;
  format.pretty = true;
  if (!result.data) return encodeJson(JSONObject{}, format);
  return visitTool(tool, [&]<class Tool>(const Tool&) {
    return encodeJson(JsonAs<typename Tool::Payload>{*result.data}, format);
  });
}

ExitStatus refuse(const CommandContext& context, const std::string& problem) {
  context.err << "velmora: " << problem << '\n';
  return ExitStatus::usage;
}

}  // namespace

BridgeAnswer answerOf(const CommandContext& context, ToolName tool, JsonMembers arguments,
                      std::chrono::seconds deadline) {
  const LocalControlCall<JsonMembers> call{
      .requestId = Uuid::random(),
      .client = {.name = "velmora command line", .version = context.version, .processId = ::getpid()},
      .operation = tool,
      .arguments = arguments};
  return context.call(BridgeRequest(call), deadline);
}

StructuredError errorOf(const BridgeAnswer& answer) {
  return answer.result.error.value_or(StructuredError{.message = "The call failed."});
}

void explain(const CommandContext& context, const StructuredError& error) {
  context.err << "velmora: " << plainText(error.message) << " (" << wireName(error.code) << ")\n"
              << plainText(error.recoverySuggestion) << '\n';
}

ExitStatus callTool(const CommandContext& context, const std::string& name, const std::string& json) {
  const auto tool = fromWireName<ToolName>(name);
  if (!tool) return refuse(context, unknownTool(name));
  const auto text = json == "-" ? readAll(context.in) : json;
  if (text.size() > LocalControlCodec::maximumPayloadSize)
    return refuse(context, "the arguments are larger than a request may be, which is 1 MiB");
  boost::json::value arguments;
  try {
    arguments = parseJson(text);
  } catch (const JsonDecodeError& error) {
    return refuse(context, std::string("the arguments: ") + error.what() +
                               "\nWrite them as one word of the shell, such as '{\"includeBusy\": false}'.");
  }
  if (!arguments.is_object()) {
    return refuse(context, "the arguments must be a JSON object, such as {\"key\": \"tab\"}");
  }

  const auto answer = answerOf(context, *tool, {&arguments}, callDeadline);
  for (const auto& warning : answer.result.warnings) explain(context, warning);
  if (answer.result.ok) {
    context.out << printed(*tool, answer.result) << '\n';
    return ExitStatus::success;
  }
  const auto error = errorOf(answer);
  explain(context, error);
  if (error.code == ErrorCode::invalidArgument) {
    // Which argument the application could not decode: its answer does not say.
    if (const auto fault = argumentFault(*tool, arguments.get_object()))
      context.err << plainText(*fault) << '\n';
  }
  return ExitStatus::failure;
}

}  // namespace velmora
