// The processes of a terminal's session, to end those that outlive their terminal.
#pragma once

#include <signal.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace velmora::testing {

/// Whether the process has ended and only waits for its parent to notice.
inline bool isZombie(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  std::getline(file, text);
  const auto name = text.rfind(')');  // may hold anything
  return name == std::string::npos || text.substr(name, 3) == ") Z";
}

/// The running processes whose session `leader` began. Empty where /proc does not tell.
inline std::vector<pid_t> processesOfSession(pid_t leader) {
  std::vector<pid_t> processes;
  std::error_code unreadable;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", unreadable)) {
    const auto name = entry.path().filename().string();
    pid_t process = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
    if (error == std::errc() && end == name.data() + name.size() && ::getsid(process) == leader &&
        !isZombie(process)) {
      processes.push_back(process);
    }
  }
  return processes;
}

}  // namespace velmora::testing
