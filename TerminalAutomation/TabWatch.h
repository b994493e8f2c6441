// Whether what was typed into a tab has ended.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace velmora {

/// Begun before the input is typed. Belongs to one thread at a time.
class TabWatch {
 public:
  enum class Activity { quiet, busy, closed };

  /// What the terminal shows of the input.
  struct View {
    bool taken = false;    ///< The shell has taken the input and shows its prompt again.
    std::string output{};  ///< What appeared since, without the line that was typed and the prompt.
    bool truncated = false;
    /// How it ended, when the shell says so and it certainly speaks of this input.
    std::optional<int> exitStatus{};
  };

  virtual ~TabWatch() = default;

  /// One look into the system's own tables: microseconds, and no program is started.
  virtual Activity glance() = 0;

  /// Asks the terminal itself. At most `maxCharacters` of the output's end are returned, and none when the
  /// input was not taken. `unfinished` asks for what has appeared so far instead, whatever has become of the
  /// input.
  virtual View look(std::int64_t maxCharacters, bool unfinished,
                    std::chrono::steady_clock::time_point deadline) = 0;
};

}  // namespace velmora
