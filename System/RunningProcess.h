// What the system tells about a process that runs.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace velmora {

struct RunningProcess {
  std::string name;                   ///< Of its program, without the folder; empty when it is not told.
  std::optional<double> startedAt{};  ///< In seconds since 1970, exact to the second.
};

/// Nothing when no such process runs; one that has ended and waits for its parent does not run. Any thread.
std::optional<RunningProcess> runningProcess(pid_t process);

}  // namespace velmora
