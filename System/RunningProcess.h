// What the system tells about a process that runs.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace velmora {

struct RunningProcess {
  std::string name;                   ///< Of its program, without the folder; empty when it is not told.
  std::optional<double> startedAt{};  ///< In seconds since 1970, exact to the second.
  std::int64_t startTicks = 0;        ///< The same as the system counts it; 0 where it does not.
  pid_t parent = 0;                   ///< The process that started it, or has adopted it.
  std::optional<std::filesystem::path> terminal{};  ///< Its controlling terminal, such as "/dev/pts/3".
  bool isStopped = false;                           ///< By a signal, until another lets it go on.
  bool isReplaced = false;  ///< The file of its program has been removed or replaced. Only Linux tells.
};

/// Nothing when no such process runs; one that has ended and waits for its parent does not run. Any thread.
std::optional<RunningProcess> runningProcess(pid_t process);

/// The file that this process runs, with every link in its path resolved. Empty when the system does not say.
/// Any thread.
std::filesystem::path runningProgramFile();

}  // namespace velmora
