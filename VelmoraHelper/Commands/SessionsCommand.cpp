#include "VelmoraHelper/Commands/SessionsCommand.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "System/Utf8.h"
#include "VelmoraHelper/Commands/CallCommand.h"
#include "VelmoraHelper/Commands/CellText.h"
#include "VelmoraHelper/Commands/PersonCalls.h"

namespace velmora {

namespace {

constexpr std::size_t shortIdCharacters = 8;

// Everything but the title, which may have any width.
using Columns = std::array<std::string, 4>;

Columns rowOf(const PersonSession& named) {
  std::string targets;
  for (const auto& target : named.targets) targets += (targets.empty() ? "" : " ") + plainText(target);
  const auto& session = named.session;
  return {shortId(session.sessionId), targets.empty() ? plainText(session.tty) : targets,
          std::string(wireName(session.permission)), session.busy ? "busy" : "idle"};
}

void printTable(std::ostream& out, const std::vector<PersonSession>& sessions) {
  std::vector<Columns> rows{{"ID", "TARGET", "PERMISSION", "STATE"}};
  for (const auto& named : sessions) rows.push_back(rowOf(named));
  std::array<int, 4> widths{};
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columnsOf(row[i]));
  }
  for (std::size_t line = 0; line < rows.size(); ++line) {
    for (std::size_t i = 0; i < rows[line].size(); ++i) out << padded(rows[line][i], widths[i] + 2);
    out << (line == 0 ? "TITLE" : plainText(sessions[line - 1].session.title)) << '\n';
  }
}

template <class Payload>
ExitStatus print(const CommandContext& context, PersonVerb verb, bool json) {
  const auto calls = context.person();
  const auto answer = askPerson<Payload>(*calls, verb);
  if (answer.error) {
    explain(context, *answer.error);
    return ExitStatus::failure;
  }
  if constexpr (std::is_same_v<Payload, PersonSessions>) {
    if (!json) {
      printTable(context.out, answer.payload.sessions);
      return ExitStatus::success;
    }
  }
  auto format = JsonFormat::people;
  format.pretty = true;
  context.out << encodeJson(answer.payload, format) << '\n';
  return ExitStatus::success;
}

}  // namespace

ExitStatus printSessionList(const CommandContext& context, bool json) {
  return print<PersonSessions>(context, PersonVerb::sessions, json);
}

ExitStatus printStatusAsJson(const CommandContext& context) {
  return print<PersonStatus>(context, PersonVerb::status, true);
}

std::string shortId(const Uuid& id) { return id.toString().substr(0, shortIdCharacters); }

}  // namespace velmora
