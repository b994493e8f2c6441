// What the system says of a process.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace velmora {

/// A line of /proc/PID/status in megabytes: "VmRSS", or "VmHWM" for the peak. Not the ru_maxrss of `wait4`,
/// which counts the parent that the process was forked from.
inline double megabytesOf(pid_t process, const std::string& figure) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(figure + ":")) return std::stod(line.substr(figure.size() + 1)) / 1024;
  }
  return 0;
}

inline std::int64_t entriesOf(pid_t process, const std::string& folder) {
  const std::filesystem::directory_iterator entries("/proc/" + std::to_string(process) + "/" + folder);
  return std::distance(begin(entries), end(entries));
}

/// A field of /proc/PID/stat from the third on, by the numbers of the manual page.
inline std::int64_t statField(pid_t process, int number) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  std::getline(file, text);
  std::istringstream fields(text.substr(text.rfind(')') + 2));
  std::string skipped;
  for (int field = 3; field < number; ++field) fields >> skipped;
  std::int64_t value = 0;
  fields >> value;
  return value;
}

/// Processor time used so far, in clock ticks.
inline std::int64_t ticksOf(pid_t process) { return statField(process, 14) + statField(process, 15); }

/// The same with that of the child processes that it has waited for.
inline std::int64_t ticksWithChildrenOf(pid_t process) {
  return ticksOf(process) + statField(process, 16) + statField(process, 17);
}

}  // namespace velmora
