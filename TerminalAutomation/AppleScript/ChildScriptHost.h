// The script in a process of its own, which can be ended at any moment and started anew.
#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "System/Environment.h"
#include "System/LastingChild.h"
#include "System/Log.h"
#include "TerminalAutomation/AppleScript/ScriptFrames.h"
#include "TerminalAutomation/AppleScript/ScriptHost.h"

namespace velmora {

/// Runs `velmora-script-host` and asks it by ScriptFrames. A call that does not end in time, a child that
/// dies or that says what it was not asked ends the child; the next call starts another, which compiles the
/// script again. A call that may have begun is never repeated: it fails with connectionInvalid (-609) then.
class ChildScriptHost final : public ScriptHost {
 public:
  /// `log` hears why a child was ended. Throws std::system_error when there are no descriptors left.
  ChildScriptHost(std::filesystem::path program, const Environment& environment, Log log);

  /// Waits for half a minute at most. Also false when the program cannot be started or does not answer.
  bool compile(const std::string& source) override;
  ScriptReply call(const std::string& handler, const std::vector<ScriptArgument>& arguments,
                   Deadline deadline) override;
  std::int64_t consent(const std::string& bundleIdentifier, bool asksUser, Deadline deadline) override;
  void cancel() noexcept override;

 private:
  ScriptReply request(const ScriptRequest& request, Deadline deadline);
  ScriptReply start(Deadline deadline);
  ScriptReply ask(const ScriptRequest& request, Deadline deadline);
  ScriptFailure end(std::int64_t number, const std::string& reason);
  bool isIdle() const;

  const std::filesystem::path program_;
  const std::vector<std::string> environment_;
  const Log log_;
  const Pipe cancelPipe_ = openPipe();
  std::atomic<bool> cancelled_ = false;
  std::string source_;
  std::int64_t lastRequest_ = 0;
  std::unique_ptr<LastingChild> child_;
};

}  // namespace velmora
