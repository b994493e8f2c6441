// Leaves word for `velmora doctor` of how the bridge asks tmux.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "System/Mutex.h"

namespace velmora {

/// A monitor over one file, `tmuxWayFile`. It never throws: a note that cannot be kept is no reason for a
/// call to fail. The first word replaces what a bridge that was killed left; destruction removes the file,
/// unless nothing was told: it may be another bridge's.
class WayNote {
 public:
  /// `runtimeFolder` tells where the bridge's folder is by now: the socket moves with the user's runtime
  /// folder, and whatever removed its folder took the note along. Nothing is written when the bridge's folder
  /// is not there.
  explicit WayNote(std::function<std::filesystem::path()> runtimeFolder);
  ~WayNote();
  WayNote(const WayNote&) = delete;
  WayNote& operator=(const WayNote&) = delete;

  /// Empty words remove the note.
  void tell(const std::string& way);

 private:
  bool holds(const std::filesystem::path& file, const std::string& way) const VELMORA_REQUIRES(mutex_);
  void write(const std::string& way) const noexcept VELMORA_REQUIRES(mutex_);

  const std::function<std::filesystem::path()> runtimeFolder_;
  Mutex mutex_;
  std::filesystem::path file_ VELMORA_GUARDED_BY(mutex_);
  std::optional<std::string> told_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
