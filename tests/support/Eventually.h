// Waiting for another process, with a deadline.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

#include "tests/support/Files.h"

namespace velmora::testing {

inline constexpr std::chrono::seconds patience{20};

/// Asks again until `condition` holds; false when it does not within the deadline.
inline bool eventually(const std::function<bool()>& condition,
                       std::chrono::milliseconds deadline = patience) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

/// Whether the process runs; one that has ended and waits for its parent does not.
inline bool isAlive(pid_t process) {
  const std::string stat = contentOf("/proc/" + std::to_string(process) + "/stat");
  return !stat.empty() && stat.find(") Z") == std::string::npos;
}

}  // namespace velmora::testing
