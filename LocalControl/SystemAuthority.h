// The system's own authority, polkit where there is one, which asks the user in a dialogue for their
// password.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>

#include "System/ChildProcess.h"
#include "System/RunningProcess.h"

namespace velmora {

/// Polkit's own program, and the action that the package installs. Both must be there.
struct SystemAuthority {
  std::filesystem::path program = "/usr/bin/pkcheck";
  std::filesystem::path action = installedAction();

  /// Beside the program that runs: nothing of a build folder is known to polkit.
  static std::filesystem::path installedAction();
};

/// How long the user has for the dialogue.
inline constexpr std::chrono::seconds authorityWaits{60};

/// Whether the user lets this process give agents more; nothing where there is no such authority, or where it
/// has nobody to ask, as in most logins over SSH. Waits for the user, until `programs` is cancelled. Any
/// thread. Throws std::system_error when the system cannot make pipes.
std::optional<bool> allowedByAuthority(pid_t process, const std::optional<RunningProcess>& found,
                                       ChildProcessRunner& programs, const SystemAuthority& authority = {});

}  // namespace velmora
