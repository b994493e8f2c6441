// A file of its own although short: macOS has no authority that a program of the user's could ask so.
#include "LocalControl/SystemAuthority.h"

namespace velmora {

std::filesystem::path SystemAuthority::installedAction() { return {}; }

std::optional<bool> allowedByAuthority(pid_t, const std::optional<RunningProcess>&, ChildProcessRunner&,
                                       const SystemAuthority&) {
  return std::nullopt;
}

}  // namespace velmora
