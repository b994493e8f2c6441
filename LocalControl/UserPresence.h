// How the bridge makes sure that a user, and not a program, asks to give agents more: it shows a word on the
// user's own terminal, where no agent reads, and has it typed back; or the system asks for a password.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "BridgeCore/OwnTerminal.h"
#include "LocalControl/SystemAuthority.h"
#include "System/RunningProcess.h"

namespace velmora {

/// Writes to a terminal, without waiting for one whose output is stopped. Throws std::system_error, also when
/// the file is no terminal or not this user's.
void showOnTerminal(const std::filesystem::path& terminal, std::string_view text);

/// Four letters that nobody can guess.
std::string randomWord();

/// The real ones, unless a test says otherwise.
struct UserPresence {
  ProcessLookup lookUp = runningProcess;
  std::function<void(const std::filesystem::path& terminal, std::string_view text)> show = showOnTerminal;
  std::function<std::string()> newWord = randomWord;
  std::shared_ptr<ChildProcessRunner> programs = std::make_shared<ChildProcessRunner>();
  std::function<std::optional<bool>(pid_t process)> authority = [programs = programs](pid_t process) {
    return allowedByAuthority(process, runningProcess(process), *programs);
  };
  std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
};

}  // namespace velmora
