#include "TerminalAutomation/Tmux/WayNote.h"

#include <system_error>
#include <utility>

#include "BridgeModels/TmuxWayFile.h"
#include "System/StagedFile.h"

namespace velmora {

WayNote::WayNote(std::function<std::filesystem::path()> runtimeFolder)
    : runtimeFolder_(std::move(runtimeFolder)) {}

WayNote::~WayNote() {
  const MutexLock lock(mutex_);
  if (told_) write({});
}

void WayNote::tell(const std::string& way) {
  const std::filesystem::path file = runtimeFolder_() / tmuxWayFile;
  const MutexLock lock(mutex_);
  if (holds(file, way)) return;
  if (file != file_ && told_) write({});
  file_ = file;
  told_ = way;
  write(way);
}

bool WayNote::holds(const std::filesystem::path& file, const std::string& way) const {
  std::error_code unseen;
  return way == told_ && file == file_ && (way.empty() || std::filesystem::exists(file, unseen));
}

void WayNote::write(const std::string& way) const noexcept {
  try {
    PosixFileSystem files;
    if (way.empty()) {
      files.remove(file_);
    } else if (files.exists(file_.parent_path())) {
      StagedFile(files, file_, way).commit();
    }
  } catch (const std::exception&) {
    // The doctor says nothing of it then.
  }
}

}  // namespace velmora
