// Remembers for the server behind one socket whether it may be spoken to directly.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "System/Mutex.h"
#include "TerminalAutomation/Tmux/Direct/TmuxReferee.h"

namespace velmora {

/// Which socket it is. A server that starts makes a new one, and nothing that is done with it later changes
/// this.
struct TmuxSocketStamp {
  std::uint64_t device = 0;
  std::uint64_t file = 0;
  std::filesystem::file_time_type made{};

  bool operator==(const TmuxSocketStamp&) const = default;
};

/// Nothing when nothing is there.
std::optional<TmuxSocketStamp> tmuxSocketStamp(const std::filesystem::path& socket);

/// A monitor. It knows one server, that of the stamp it was asked about last.
class TmuxTrust {
 public:
  /// What is known of the server. When nothing is, one caller at a time gets nothing, and must judge and then
  /// call `settle`; the others are sent to the program meanwhile.
  std::optional<TmuxVerdict> verdict(const TmuxSocketStamp& socket);

  /// Ends a judgement that `verdict` asked for. `undecided` and `refused` are asked again at the next call.
  void settle(const TmuxSocketStamp& socket, TmuxVerdict verdict);

  /// The server did something unexpected: it is not spoken to directly again. Returns whether that is news.
  bool distrust(const TmuxSocketStamp& socket, const std::string& reason);

  /// Whether the server that was asked last may be spoken to directly.
  bool isDirect() const;

  /// Why the program is used for the server that was asked last; nothing when it is not, or not known yet.
  std::optional<std::string> reason() const;

 private:
  mutable Mutex mutex_;
  TmuxSocketStamp socket_ VELMORA_GUARDED_BY(mutex_);
  TmuxVerdict verdict_ VELMORA_GUARDED_BY(mutex_);
  bool judging_ VELMORA_GUARDED_BY(mutex_) = false;
};

}  // namespace velmora
