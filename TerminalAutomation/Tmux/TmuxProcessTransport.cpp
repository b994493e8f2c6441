#include "TerminalAutomation/Tmux/TmuxProcessTransport.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "System/FindProgram.h"
#include "TerminalAutomation/Tmux/ServerScope.h"
#include "TerminalAutomation/Tmux/TmuxSocket.h"

namespace velmora {

namespace {

bool mayInherit(std::string_view name) {
  static constexpr std::array<std::string_view, 13> names{
      "HOME",  "PATH", "USER",    "LOGNAME",         "SHELL",         "LANG",
      "TERM",  "TZ",   "DISPLAY", "WAYLAND_DISPLAY", "SSH_AUTH_SOCK", "DBUS_SESSION_BUS_ADDRESS",
      "TMPDIR"};
  return std::find(names.begin(), names.end(), name) != names.end() || name.starts_with("LC_") ||
         name.starts_with("XDG_") || name == "XAUTHORITY";
}

}  // namespace

std::vector<std::string> cleanedTmuxEnvironment(const Environment& environment) {
  Environment cleaned = environment;
  std::erase_if(cleaned, [](const auto& variable) { return !mayInherit(variable.first); });
  return environmentList(cleaned);
}

TmuxProcessTransport::TmuxProcessTransport(Environment environment,
                                           const std::optional<std::filesystem::path>& socket,
                                           std::optional<std::filesystem::path> program, bool inService)
    : environment_(std::move(environment)),
      childEnvironment_(cleanedTmuxEnvironment(environment_)),
      socket_(chooseTmuxSocket(socket, environment_)),
      program_(std::move(program)),
      inService_(inService) {}

TmuxAnswer TmuxProcessTransport::run(const TmuxInvocation& invocation) {
  using End = TmuxAnswer::End;
  if (auto defect = tmuxSocketDefect(socket_))
    return {.end = End::unsafeSocket, .errorOutput = std::move(*defect)};
  const auto program = program_ ? program_ : findProgram("tmux", environment_);
  if (!program) return {.end = End::notInstalled, .errorOutput = "The program tmux was not found."};

  // -u: UTF-8 whatever the locale.
  std::vector<std::string> arguments{"-u", "-S", socket_.string()};
  arguments.insert(arguments.end(), invocation.arguments.begin(), invocation.arguments.end());
  ChildRequest request{.program = *program,
                       .arguments = std::move(arguments),
                       .environment = childEnvironment_,
                       .standardInput = invocation.standardInput,
                       .deadline = invocation.deadline,
                       .outputLimit = invocation.outputLimit};
  ChildResult result = mayStartServer(invocation) ? runInScope(request) : runner_.run(request);
  TmuxAnswer answer{.exitStatus = result.exitStatus,
                    .output = std::move(result.output),
                    .errorOutput = std::move(result.errorOutput)};
  switch (result.end) {
    case ChildResult::End::exited:
      answer.end = End::exited;
      break;
    case ChildResult::End::timedOut:
      answer.end = End::timedOut;
      break;
    case ChildResult::End::cancelled:
      answer.end = End::cancelled;
      break;
    case ChildResult::End::outputTooLarge:
      answer.end = End::outputTooLarge;
      break;
    case ChildResult::End::notStarted:
      answer.end = End::notInstalled;
      answer.errorOutput = "The program " + program->string() +
                           " could not be started: " + std::strerror(result.startError) + ".";
      break;
  }
  return answer;
}

bool TmuxProcessTransport::mayStartServer(const TmuxInvocation& invocation) {
  if (invocation.arguments.empty()) return false;
  const std::string& first = invocation.arguments.front();
  return first == "new-session" || first == "start-server";
}

/// Without a user's systemd to ask, as it would be run otherwise.
ChildResult TmuxProcessTransport::runInScope(const ChildRequest& request) {
  const auto starter = inService_ ? findProgram("systemd-run", environment_) : std::nullopt;
  if (!starter) return runner_.run(request);
  ChildRequest scoped = request;
  scoped.program = *starter;
  scoped.arguments = {"--user", "--scope", "--quiet", "--collect", "--", request.program.string()};
  scoped.arguments.insert(scoped.arguments.end(), request.arguments.begin(), request.arguments.end());
  ChildResult result = runner_.run(scoped);
  const bool began =
      result.end != ChildResult::End::notStarted &&
      !(result.end == ChildResult::End::exited && result.exitStatus != 0 && saysNoScope(result.errorOutput));
  return began ? result : runner_.run(request);
}

}  // namespace velmora
