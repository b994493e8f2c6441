#include "VelmoraHelper/Commands/StatusCommand.h"

#include <ostream>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/ToolPayloads.h"
#include "LocalControl/UnixSocketError.h"
#include "System/Utf8.h"
#include "VelmoraHelper/Commands/CallCommand.h"
#include "VelmoraHelper/Commands/Payload.h"
#include "VelmoraHelper/Commands/SettingsCheck.h"

namespace velmora {

namespace {

std::string counted(std::int64_t number, const std::string& noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

std::string inWords(MCPState state) {
  return state == MCPState::active ? "active"
                                   : "paused: nothing is typed or opened until you resume it in Velmora";
}

std::string inWords(const BridgeStatus& status) {
  switch (status.terminalState) {
    case TerminalState::notRunning:
      return "not running";
    case TerminalState::noWindows:
      return "running, without a window";
    case TerminalState::available:
      return "available, " + counted(status.windowCount, "window");
    case TerminalState::unavailable:
      break;
  }
  return "unavailable" + (status.lastError ? ": " + plainText(status.lastError->message) : "");
}

// A status that was answered came over a connection of its own; a socket that refuses one is a bridge that
// accepts no more, or none at all.
bool isAccepting(const CommandContext& context) {
  try {
    context.connect();
    return true;
  } catch (const UnixSocketError&) {
    return false;
  }
}

void printSessions(std::ostream& out, const std::vector<TerminalSession>& sessions) {
  for (const auto& session : sessions) {
    out << "  " << session.sessionId.toString() << "  " << wireName(session.permission)
        << (session.busy ? ", busy" : "") << "  " << plainText(session.tty) << "  "
        << plainText(session.title) << '\n';
  }
}

// A warning only: the bridge serves all the same.
void printSettings(const CommandContext& context) {
  const auto settings = checkSettings(context.settings);
  context.out << "Settings:    " << plainText(settings.finding) << '\n';
  if (!settings.ok) context.err << "velmora: the settings: " << plainText(settings.nextStep) << '\n';
}

}  // namespace

ExitStatus printStatus(const CommandContext& context) {
  const auto answer = payloadOf<StatusPayload>(context, ToolName::status);
  if (answer.error) {
    context.out << "Accepting:   " << (isAccepting(context) ? "yes" : "no") << '\n';
    explain(context, *answer.error);
    return ExitStatus::failure;
  }
  const auto& status = answer.payload.status;
  context.out << "Bridge:      " << inWords(status.mcpState) << '\n'
              << "Accepting:   yes\n"
              << "Terminal:    " << inWords(status) << '\n'
              << "Permission:  " << wireName(status.automationPermission) << '\n';
  printSettings(context);
  if (status.terminalState != TerminalState::available) return ExitStatus::success;

  const auto listed = payloadOf<SessionsPayload>(context, ToolName::listSessions);
  if (listed.error) {
    explain(context, *listed.error);
    return ExitStatus::failure;
  }
  context.out << "Sessions:    " << listed.payload.sessions.size() << '\n';
  printSessions(context.out, listed.payload.sessions);
  return ExitStatus::success;
}

}  // namespace velmora
