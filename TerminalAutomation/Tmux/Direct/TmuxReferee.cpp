#include "TerminalAutomation/Tmux/Direct/TmuxReferee.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace velmora {

namespace {

using Way = TmuxVerdict::Way;
using Reach = TmuxDirectResult::Reach;

constexpr std::array<std::string_view, 4> testedVersions{"3.3a", "3.5a", "3.7c", "3.8"};
constexpr int rounds = 3;

struct Server {
  std::string version;
  pid_t process;
};

/// What both ways are asked: who the server is, and all that it has.
TmuxInvocation question(std::chrono::steady_clock::time_point deadline) {
  return {.arguments =
              {"display-message", "-p", "#{version}\t#{pid}\t#{start_time}", ";", "list-panes", "-a", "-F",
               "#{session_id}\t#{window_id}\t#{pane_id}\t#{pane_pid}\t#{pane_tty}\t#{pid}\t#{start_time}"},
          .deadline = deadline};
}

std::optional<Server> serverOf(const TmuxAnswer& answer) {
  if (answer.end != TmuxAnswer::End::exited) return std::nullopt;
  const std::string_view output = answer.output;
  const std::size_t versionEnd = output.find('\t');
  const std::size_t processEnd = output.find('\t', versionEnd + 1);
  if (versionEnd == std::string_view::npos || processEnd == std::string_view::npos) return std::nullopt;
  Server server{.version = std::string(output.substr(0, versionEnd)), .process = 0};
  const auto [end, error] =
      std::from_chars(output.data() + versionEnd + 1, output.data() + processEnd, server.process);
  if (error != std::errc() || end != output.data() + processEnd || server.process <= 0) return std::nullopt;
  return server;
}

bool agree(const TmuxAnswer& left, const TmuxAnswer& right) {
  return left.end == right.end && left.exitStatus == right.exitStatus && left.output == right.output &&
         left.errorOutput == right.errorOutput;
}

TmuxVerdict byProgram(std::string reason) { return {.way = Way::program, .reason = std::move(reason)}; }

}  // namespace

bool isTestedTmuxVersion(std::string_view version) {
  return std::find(testedVersions.begin(), testedVersions.end(), version) != testedVersions.end();
}

TmuxVerdict judgeTmux(TmuxTransport& program, TmuxDirectClient& direct,
                      std::chrono::steady_clock::time_point deadline) {
  const TmuxInvocation asked = question(deadline);
  TmuxAnswer fromProgram = program.run(asked);
  for (int round = 0; round < rounds; ++round) {
    const auto server = serverOf(fromProgram);
    if (!server) return {};
    if (!isTestedTmuxVersion(server->version))
      return byProgram("tmux " + server->version.substr(0, 20) + " is not a tested version");
    const auto [reach, exchange] = direct.ask(asked, server->process);
    if (reach == Reach::otherUser) return {.way = Way::refused};
    if (reach == Reach::otherServer) return byProgram("the socket is not the server's own");
    if (reach == Reach::noServer) return {};
    if (exchange.surprise) return byProgram(*exchange.surprise);
    if (exchange.answer.end != TmuxAnswer::End::exited) return {};
    if (agree(fromProgram, exchange.answer)) return {.way = Way::direct, .server = server->process};
    // Unless a pane came or went just then, the program says again what it said before.
    TmuxAnswer again = program.run(asked);
    if (agree(fromProgram, again))
      return byProgram("the server answers differently from what the program says");
    fromProgram = std::move(again);
  }
  return {};
}

}  // namespace velmora
