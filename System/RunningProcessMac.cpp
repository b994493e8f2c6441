// A file of its own although short: what a process is called and when it began is not asked for here.
#include <signal.h>

#include <cerrno>

#include "System/RunningProcess.h"

namespace velmora {

std::optional<RunningProcess> runningProcess(pid_t process) {
  if (::kill(process, 0) != 0 && errno == ESRCH) return std::nullopt;
  return RunningProcess{};
}

}  // namespace velmora
