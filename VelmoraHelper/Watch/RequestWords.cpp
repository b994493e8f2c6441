#include "VelmoraHelper/Watch/RequestWords.h"

#include <array>
#include <cmath>
#include <ctime>

namespace velmora {

std::string localClock(Date date) {
  const auto seconds = static_cast<std::time_t>(std::floor(date.unixSeconds()));
  std::tm parts{};
  std::array<char, 16> text{};
  if (::localtime_r(&seconds, &parts) == nullptr) return "?";
  return {text.data(), std::strftime(text.data(), text.size(), "%H:%M:%S", &parts)};
}

std::string outcomeOf(const MCPRequestRecord& request) {
  switch (request.status) {
    case RequestStatus::received:
    case RequestStatus::processing:
      return "running";
    case RequestStatus::delivered:
    case RequestStatus::readComplete:
      return "ok";
    case RequestStatus::rejected:
      return "refused";
    case RequestStatus::failed:
      return "failed";
    case RequestStatus::cancelled:
      break;
  }
  return "ended";
}

WatchStyle styleOf(const MCPRequestRecord& request) {
  if (request.status == RequestStatus::rejected) return WatchStyle::warning;
  if (request.status == RequestStatus::failed) return WatchStyle::bad;
  return WatchStyle::good;
}

std::string durationOf(const MCPRequestRecord& request) {
  if (!request.durationMilliseconds) return {};
  const auto milliseconds = *request.durationMilliseconds;
  if (milliseconds < 1'000) return std::to_string(milliseconds) + " ms";
  if (milliseconds < 100'000)
    return std::to_string(milliseconds / 1'000) + "." + std::to_string(milliseconds / 100 % 10) + " s";
  return milliseconds < 10'000'000 ? std::to_string(milliseconds / 1'000) + " s" : "hours";
}

std::string_view shortName(ToolName tool) {
  switch (tool) {
    case ToolName::status:
      return "status";
    case ToolName::listSessions:
      return "list";
    case ToolName::getActiveSession:
      return "active";
    case ToolName::createSession:
      return "open";
    case ToolName::sendCommand:
      return "command";
    case ToolName::sendKey:
      return "key";
    case ToolName::readOutput:
      return "read";
    case ToolName::captureScreen:
      return "picture";
    case ToolName::focusSession:
      break;
  }
  return "focus";
}

std::string_view nameOf(ToolName tool) {
  constexpr std::string_view common = "terminal_";
  return wireName(tool).substr(common.size());
}

std::string commandLineOf(const MCPRequestRecord& request, bool withError) {
  std::string text;
  if (withError && request.error) text = "(" + std::string(wireName(request.error->code)) + ") ";
  const auto& command = request.commandBody ? request.commandBody : request.commandSummary;
  if (!command) return text;
  const auto end = command->find_first_of("\r\n");
  text.append(*command, 0, end);
  if (end != std::string::npos && end + 1 < command->size()) text += " ...";
  return text;
}

std::string searchedText(const MCPRequestRecord& request) {
  auto text = request.client.name + " " + std::string(wireName(request.toolName)) + " " + outcomeOf(request);
  if (request.error) text += " " + std::string(wireName(request.error->code));
  if (request.sessionSnapshot) {
    text += " " + request.sessionSnapshot->sessionId.toString() + " " +
            request.sessionSnapshot->title.value_or("");
  }
  return text + " " + request.commandBody.value_or(request.commandSummary.value_or(""));
}

}  // namespace velmora
