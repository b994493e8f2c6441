// Asks a tmux server over its own socket, and the tmux program wherever that is not known to be right.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "BridgeModels/BridgeEnums.h"
#include "System/Environment.h"
#include "System/Log.h"
#include "TerminalAutomation/Tmux/Direct/TmuxDirectClient.h"
#include "TerminalAutomation/Tmux/Direct/TmuxTrust.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

/// Answers as `program` does, some ten times faster. The first look at each server goes through the program;
/// the server is spoken to directly once its version is a tested one and both ways have given the same
/// answer. After anything unexpected it is the program's again, until another server takes its place. A
/// command that the server may have got is never given twice: when the connection breaks after that, the
/// answer is the program's "server exited unexpectedly".
///
/// Thread-safe; calls run side by side.
class TmuxSocketTransport final : public TmuxTransport {
 public:
  /// `environment` is what `program` was made with. `log` gets a line when the program takes over for a
  /// server.
  TmuxSocketTransport(std::unique_ptr<TmuxTransport> program, const Environment& environment,
                      Log log = Log());

  TmuxAnswer run(const TmuxInvocation& invocation) override;
  std::string socketPath() const override { return program_->socketPath(); }
  void useProgramOnly(bool only) noexcept override { programOnly_ = only; }
  std::string way() const override;
  void cancel() noexcept override;

  /// Why the program is used for the current server, in a few words; nothing when it is spoken to directly,
  /// or has not been asked yet.
  std::optional<std::string> whyProgram() const { return trust_.reason(); }

 private:
  std::optional<TmuxAnswer> runDirectly(const TmuxInvocation& invocation);
  TmuxVerdict judge(const TmuxSocketStamp& socket, std::chrono::steady_clock::time_point deadline);
  void tell(const std::string& reason) const;

  const std::unique_ptr<TmuxTransport> program_;
  std::atomic<bool> programOnly_ = false;
  const Log log_;
  TmuxDirectClient direct_;
  TmuxTrust trust_;
};

/// The transport for the server that `socket` and `environment` name (see chooseTmuxSocket), with `program`
/// or, without it, the tmux in $PATH. `inService`: the bridge is a service, which its servers shall outlive.
std::unique_ptr<TmuxTransport> makeTmuxTransport(TmuxTransportChoice choice, const Environment& environment,
                                                 const std::optional<std::filesystem::path>& socket,
                                                 const std::optional<std::filesystem::path>& program,
                                                 const Log& log, bool inService = false);

}  // namespace velmora
