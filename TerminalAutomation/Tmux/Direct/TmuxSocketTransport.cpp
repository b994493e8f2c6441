#include "TerminalAutomation/Tmux/Direct/TmuxSocketTransport.h"

#include <utility>

#include "TerminalAutomation/Tmux/Direct/DirectCommands.h"
#include "TerminalAutomation/Tmux/TmuxProcessTransport.h"
#include "TerminalAutomation/Tmux/TmuxSocket.h"

namespace velmora {

using Way = TmuxVerdict::Way;
using Reach = TmuxDirectResult::Reach;
using End = TmuxAnswer::End;

TmuxSocketTransport::TmuxSocketTransport(std::unique_ptr<TmuxTransport> program,
                                         const Environment& environment, Log log)
    : program_(std::move(program)),
      log_(std::move(log)),
      direct_(program_->socketPath(), environmentValue(environment, "TERM"),
              environmentValue(environment, "HOME")) {}

TmuxAnswer TmuxSocketTransport::run(const TmuxInvocation& invocation) {
  if (!programOnly_) {
    if (auto answer = runDirectly(invocation)) return std::move(*answer);
  }
  return program_->run(invocation);
}

std::string TmuxSocketTransport::way() const {
  if (programOnly_) return program_->way() + ", as the setting tmuxTransport says";
  if (const auto reason = whyProgram()) return program_->way() + ": " + *reason;
  return trust_.isDirect() ? "over its own socket" : "";
}

void TmuxSocketTransport::cancel() noexcept {
  direct_.cancel();
  program_->cancel();
}

/// Nothing when it is the program's turn: then the server has not been given the command.
std::optional<TmuxAnswer> TmuxSocketTransport::runDirectly(const TmuxInvocation& invocation) {
  const std::filesystem::path path = socketPath();
  const auto socket = tmuxSocketStamp(path);
  // What is wrong with the socket, and that there is none, the program's transport says.
  if (!processorSpeaksTmux || !socket || tmuxSocketDefect(path) || !mayGoDirectly(invocation.arguments))
    return std::nullopt;

  auto verdict = trust_.verdict(*socket);
  if (!verdict) verdict = judge(*socket, invocation.deadline);
  if (verdict->way == Way::refused) {
    return TmuxAnswer{.end = End::unsafeSocket,
                      .errorOutput = "The tmux server runs as another user: " + path.string()};
  }
  if (verdict->way != Way::direct) {
    // Started now, the program would hand the command to a server that has let the whole time pass.
    if (std::chrono::steady_clock::now() >= invocation.deadline) return TmuxAnswer{.end = End::timedOut};
    return std::nullopt;
  }

  TmuxDirectResult result = direct_.ask(invocation, verdict->server);
  if (result.reach == Reach::noServer) return std::nullopt;
  if (result.reach != Reach::spoken)
    result.exchange.surprise = "another process has taken the server's socket";
  if (result.exchange.surprise) {
    if (trust_.distrust(*socket, *result.exchange.surprise)) tell(*result.exchange.surprise);
    if (!result.exchange.commandMayHaveLeft) return std::nullopt;
  }
  return std::move(result.exchange.answer);
}

TmuxVerdict TmuxSocketTransport::judge(const TmuxSocketStamp& socket,
                                       std::chrono::steady_clock::time_point deadline) {
  // Undecided also when an exception ends the look: the next call may look again.
  struct Settlement {
    ~Settlement() { trust.settle(socket, verdict); }
    TmuxTrust& trust;
    const TmuxSocketStamp& socket;
    TmuxVerdict verdict{};
  } settlement{.trust = trust_, .socket = socket};
  settlement.verdict = judgeTmux(*program_, direct_, deadline);
  if (settlement.verdict.way == Way::program) tell(settlement.verdict.reason);
  return settlement.verdict;
}

void TmuxSocketTransport::tell(const std::string& reason) const {
  log_.warning("tmux", "The tmux program is started for each call: " + reason + ".");
}

std::unique_ptr<TmuxTransport> makeTmuxTransport(TmuxTransportChoice choice, const Environment& environment,
                                                 const std::optional<std::filesystem::path>& socket,
                                                 const std::optional<std::filesystem::path>& program,
                                                 const Log& log, bool inService) {
  auto byProgram = std::make_unique<TmuxProcessTransport>(environment, socket, program, inService);
  if (choice == TmuxTransportChoice::program) return byProgram;
  return std::make_unique<TmuxSocketTransport>(std::move(byProgram), environment, log);
}

}  // namespace velmora
