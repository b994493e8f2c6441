#include "VelmoraHelper/Commands/HistoryCommand.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <ctime>
#include <ostream>

#include "System/Utf8.h"
#include "VelmoraHelper/Commands/CallCommand.h"
#include "VelmoraHelper/Commands/PersonCalls.h"
#include "VelmoraHelper/Commands/SessionsCommand.h"

namespace velmora {

namespace {

constexpr std::size_t mostCommandBytes = 60;

std::string localTime(Date date) {
  const auto seconds = static_cast<std::time_t>(std::floor(date.unixSeconds()));
  std::tm parts{};
  std::array<char, 32> text{};
  if (::localtime_r(&seconds, &parts) == nullptr) return date.toIso8601();
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts)};
}

ExitStatus refuseQuestion(const CommandContext& context, const std::string& problem) {
  context.err << "velmora: " << problem << '\n';
  return ExitStatus::usage;
}

std::optional<ToolName> toolNamed(const std::string& name) {
  const auto tool = fromWireName<ToolName>(name);
  return tool ? tool : fromWireName<ToolName>("terminal_" + name);
}

}  // namespace

std::optional<std::chrono::seconds> durationOf(std::string_view text) {
  constexpr std::int64_t most = 1'000'000;
  std::int64_t count = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || count < 0 || count > most) return std::nullopt;
  const auto unit = text.substr(static_cast<std::size_t>(rest - text.data()));
  if (unit == "s") return std::chrono::seconds(count);
  if (unit == "m") return std::chrono::minutes(count);
  if (unit == "h") return std::chrono::hours(count);
  if (unit == "d") return std::chrono::hours(24 * count);
  return std::nullopt;
}

std::string lineOf(const MCPRequestRecord& record) {
  auto line = localTime(record.receivedAt) + "  " + std::string(wireName(record.status));
  if (record.error) line += " " + std::string(wireName(record.error->code));
  if (record.durationMilliseconds) line += "  " + std::to_string(*record.durationMilliseconds) + " ms";
  line += "  " + plainText(firstBytes(record.client.name, mostCommandBytes));
  line += "  " + std::string(wireName(record.toolName));
  if (record.sessionSnapshot) line += "  " + shortId(record.sessionSnapshot->sessionId);
  const auto& command = record.commandBody ? record.commandBody : record.commandSummary;
  if (command) {
    line += "  " + plainText(firstBytes(*command, mostCommandBytes));
    if (command->size() > mostCommandBytes) line += "...";
  }
  return line;
}

ExitStatus printHistory(const CommandContext& context, const HistoryQuestion& question) {
  HistoryInput input;
  if (!question.since.empty()) {
    const auto duration = durationOf(question.since);
    if (!duration) return refuseQuestion(context, "--since takes a time such as 90s, 30m, 1h or 2d");
    input.since = Date::fromUnixSeconds(context.now().unixSeconds() - static_cast<double>(duration->count()));
  }
  if (!question.tool.empty()) {
    input.tool = toolNamed(question.tool);
    if (!input.tool) return refuseQuestion(context, "there is no tool \"" + plainText(question.tool) + "\"");
  }
  if (!question.session.empty()) input.session = question.session;

  const auto calls = context.person();
  const auto answer = askPerson<PersonHistory>(*calls, PersonVerb::history, argumentsOf(input));
  if (answer.error) {
    explain(context, *answer.error);
    return ExitStatus::failure;
  }
  const auto& records = answer.payload.records;
  if (question.json) {
    auto format = JsonFormat::people;
    format.pretty = true;
    context.out << encodeJson(records, format) << '\n';
  } else {
    for (auto record = records.rbegin(); record != records.rend(); ++record)
      context.out << lineOf(*record) << '\n';
  }
  if (answer.payload.more)
    context.err << "velmora: older requests are left out; --since, --session and --tool ask for fewer\n";
  return ExitStatus::success;
}

}  // namespace velmora
