#include <unistd.h>

#include "LocalControl/SystemAuthority.h"

namespace velmora {

namespace {

constexpr auto action = "app.velmora.loosen";
// As pkcheck(1) says.
constexpr int isAllowed = 0;
constexpr int isRefused = 1;
constexpr int wasDismissed = 3;

}  // namespace

std::filesystem::path SystemAuthority::installedAction() {
  return runningProgramFile().parent_path().parent_path() / "share/polkit-1/actions/app.velmora.policy";
}

std::optional<bool> allowedByAuthority(pid_t process, const std::optional<RunningProcess>& found,
                                       ChildProcessRunner& programs, const SystemAuthority& authority) {
  const auto isThere = [](const std::filesystem::path& file) { return ::access(file.c_str(), R_OK) == 0; };
  if (!found || found->startTicks == 0 || !isThere(authority.action) || !isThere(authority.program))
    return std::nullopt;
  // With its start and its user, so that no later process under its number is meant.
  const auto subject =
      std::to_string(process) + "," + std::to_string(found->startTicks) + "," + std::to_string(::geteuid());
  const auto result =
      programs.run({.program = authority.program,
                    .arguments = {"--action-id", action, "--process", subject, "--allow-user-interaction"},
                    .environment = {},
                    .deadline = std::chrono::steady_clock::now() + authorityWaits,
                    .outputLimit = 4096,
                    .ownSession = true});
  if (result.end == ChildResult::End::timedOut) return false;
  if (result.end != ChildResult::End::exited) return std::nullopt;
  if (result.exitStatus == isAllowed) return true;
  if (result.exitStatus == isRefused || result.exitStatus == wasDismissed) return false;
  return std::nullopt;
}

}  // namespace velmora
