#include "VelmoraHelper/Commands/DoctorCommand.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ostream>
#include <system_error>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/TmuxWayFile.h"
#include "BridgeModels/ToolPayloads.h"
#include "LocalControl/UnixSocketError.h"
#include "System/FileSystem.h"
#include "System/Utf8.h"
#include "VelmoraHelper/Commands/Payload.h"
#include "VelmoraHelper/Commands/SettingsCheck.h"
#include "VelmoraHelper/Commands/SocketCheck.h"
#include "VelmoraHelper/Commands/SurroundingsCheck.h"
#include "VelmoraHelper/Commands/TerminalCheck.h"
#include "VelmoraHelper/Commands/TmuxServers.h"

namespace velmora {

namespace {

constexpr const char* start = "Open Velmora (or start velmora-headless).";
constexpr const char* restart = "Restart Velmora (or velmora-headless).";

Check checkHelper(const CommandContext& context) {
  const auto path = context.program.string();
  if (!context.program.is_absolute()) {
    return Check::failed("helper", "velmora " + context.version + " cannot find its own place",
                         "Start it by its whole path.");
  }
  if (!isValidUtf8(path)) {
    return Check::failed("helper", "its path is not UTF-8: " + path, "Install Velmora in another folder.");
  }
  return Check::passed("helper", "velmora " + context.version + " at " + path);
}

// Where the application answers, or why it does not.
struct Reached {
  std::filesystem::path socketURL;
  std::optional<UnixSocketError> failure;
};

// Connects, which also compares the users at both ends.
Reached reach(const CommandContext& context) {
  try {
    return {context.connect(), std::nullopt};
  } catch (const UnixSocketError& error) {
    return {context.socketURL, error};
  }
}

Check checkPlace(const CommandContext& context, const std::filesystem::path& socketURL) {
  auto check = checkSocket(socketURL, ::geteuid());
  if (socketURL != context.socketURL) check.finding += "; nothing answers at " + context.socketURL.string();
  return check;
}

std::vector<Check> checkApplication(const std::optional<UnixSocketError>& failure) {
  constexpr const char* name = "application";
  if (!failure) {
    return {Check::passed(name, "reachable"),
            Check::passed("same user", "user " + std::to_string(::geteuid()))};
  }
  switch (failure->kind()) {
    case UnixSocketError::Kind::peerRejected:
      return {Check::passed(name, "reachable"),
              Check::failed("same user", "another user runs Velmora at this socket",
                            "Open Velmora as the user who runs this command.")};
    case UnixSocketError::Kind::system:
      if (failure->code() == ENOENT || failure->code() == ECONNREFUSED) {
        return {Check::failed(name, "not running", start)};
      }
      if (failure->code() == EAGAIN) {
        return {Check::failed(name, "running, but it accepts no more connections", restart)};
      }
      return {
          Check::failed(name, "not reachable: " + std::generic_category().message(failure->code()), restart)};
    case UnixSocketError::Kind::unsafeEndpoint:
    case UnixSocketError::Kind::disconnected:
      break;
  }
  return {Check::failed(name, "not reachable", restart)};
}

Check checkTerminal(const BridgeStatus& status) {
  constexpr const char* name = "terminal";
  switch (status.terminalState) {
    case TerminalState::notRunning:
      return Check::passed(name, "not running yet; start it, or let an agent open a window");
    case TerminalState::noWindows:
      return Check::passed(name, "running without a window; open one, or let an agent do it");
    case TerminalState::available:
      return Check::passed(name, "windows: " + std::to_string(status.windowCount));
    case TerminalState::unavailable:
      break;
  }
  if (!status.lastError) return Check::failed(name, "not available", restart);
  return Check::failed(name, status.lastError->message, status.lastError->recoverySuggestion);
}

Check checkPermission(const BridgeStatus& status) {
  constexpr const char* name = "permission";
  switch (status.automationPermission) {
    case AutomationPermission::granted:
      return Check::passed(name, "granted");
    case AutomationPermission::denied:
      return Check::failed(name, "denied",
                           "Allow Terminal automation for Velmora in System Settings, then retry.");
    case AutomationPermission::unknown:
      break;
  }
  return Check::passed(name, "not known before the terminal runs");
}

// What the bridge left word of; empty when it has not asked tmux, or has another terminal.
struct TmuxNote {
  std::string way;
  std::string socket;
};

TmuxNote tmuxNote(const std::filesystem::path& socketURL) {
  constexpr std::size_t mostBytes = 500;
  try {
    const auto text =
        PosixFileSystem().read(socketURL.parent_path().parent_path() / tmuxWayFile).substr(0, mostBytes);
    const auto end = text.find('\n');
    return {text.substr(0, end), end == std::string::npos ? "" : text.substr(end + 1)};
  } catch (const std::system_error&) {
    return {};
  }
}

bool wasSilence(const StructuredError& error) { return error.message.starts_with("Velmora did not answer"); }

std::vector<Check> checkAnswer(const CommandContext& context, const std::filesystem::path& socketURL) {
  const auto answer = payloadOf<StatusPayload>(context, ToolName::status);
  if (answer.error) {
    return {Check::failed(
        "answer", answer.error->message,
        wasSilence(*answer.error) ? stepsForHangingBridge(context) : answer.error->recoverySuggestion)};
  }
  const auto& status = answer.payload.status;
  const bool active = status.mcpState == MCPState::active;
  std::vector<Check> checks{
      Check::passed("answer", active ? "the bridge is active"
                                     : "the bridge is paused: resume it in Velmora to let agents type")};
  checks.push_back(checkTerminal(status));
  const auto note = tmuxNote(socketURL);
  if (!note.way.empty()) checks.push_back(Check::passed("tmux server", "asked " + note.way));
  if (!note.socket.empty() && context.tmuxServers)
    checks.push_back(checkTmuxServers(note.socket, context.tmuxServers(note.socket)));
  if (status.terminalState != TerminalState::unavailable ||
      status.automationPermission == AutomationPermission::denied) {
    checks.push_back(checkPermission(status));
  }
  return checks;
}

void append(std::vector<Check>& checks, std::vector<Check> more) {
  checks.insert(checks.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

std::vector<CheckLine> linesOf(const std::vector<Check>& checks) {
  std::vector<CheckLine> lines;
  lines.reserve(checks.size());
  for (const auto& check : checks) {
    auto id = check.name;
    std::replace(id.begin(), id.end(), ' ', '-');
    lines.push_back(
        {std::move(id), check.ok ? "ok" : "fail", repairUtf8(check.finding), repairUtf8(check.nextStep)});
  }
  return lines;
}

bool isOk(const Check& check) { return check.ok; }

std::string withFullStop(std::string text) {
  if (!text.empty() && text.back() != '.') text.push_back('.');
  return text;
}

}  // namespace

std::vector<Check> examine(const CommandContext& context) {
  const auto reached = reach(context);
  std::vector<Check> checks{checkHelper(context), checkTerminalProgram(context.askProgram),
                            checkSettings(context.settings), checkLimits(context.settings)};
  append(checks, checkSurroundings(context));
  append(checks, checkClients(context));
  checks.push_back(checkPlace(context, reached.socketURL));
  if (!checks.back().ok) return checks;
  append(checks, checkApplication(reached.failure));
  if (!checks.back().ok) return checks;
  append(checks, checkProcess(context));
  append(checks, checkAnswer(context, reached.socketURL));
  return checks;
}

ExitStatus printDiagnosis(const CommandContext& context, bool json) {
  const auto checks = examine(context);
  const auto outcome =
      std::all_of(checks.begin(), checks.end(), isOk) ? ExitStatus::success : ExitStatus::failure;
  if (json) {
    auto format = JsonFormat::people;
    format.pretty = true;
    context.out << encodeJson(linesOf(checks), format) << '\n';
    return outcome;
  }
  for (const auto& check : checks) {
    context.out << (check.ok ? "OK    " : "FAIL  ") << check.name << ": ";
    if (check.ok) {
      context.out << plainText(check.finding) << '\n';
    } else {
      context.out << withFullStop(plainText(check.finding)) << " Next: " << plainText(check.nextStep) << '\n';
    }
  }
  return outcome;
}

}  // namespace velmora
