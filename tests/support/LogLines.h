// Keeps what was logged, as "level area: words".
#pragma once

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "System/Log.h"
#include "System/Mutex.h"

namespace velmora::testing {

/// Thread-safe. Logs made from it may outlive it.
class LogLines {
 public:
  Log log() const {
    return Log([kept = kept_](LogLevel level, std::string_view area, std::string_view words) {
      constexpr std::array names{"debug", "info", "warning", "error"};
      std::string line = names.at(static_cast<std::size_t>(level));
      line.append(" ").append(area).append(": ").append(words);
      const MutexLock lock(kept->mutex);
      kept->lines.push_back(std::move(line));
    });
  }

  std::vector<std::string> all() const {
    const MutexLock lock(kept_->mutex);
    return kept_->lines;
  }

  /// How many lines hold `part`.
  std::size_t count(const std::string& part) const {
    const auto lines = all();
    return static_cast<std::size_t>(std::count_if(
        lines.begin(), lines.end(), [&](const auto& line) { return line.find(part) != std::string::npos; }));
  }

 private:
  struct Kept {
    Mutex mutex;
    std::vector<std::string> lines VELMORA_GUARDED_BY(mutex);
  };
  std::shared_ptr<Kept> kept_ = std::make_shared<Kept>();
};

}  // namespace velmora::testing
