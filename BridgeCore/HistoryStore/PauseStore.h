// Keeps a pause that the user made, by an empty file, so that ending the bridge and starting it again does
// not lift it. The file only takes power away: whoever makes it by hand pauses the bridge at its next start.
#pragma once

#include <filesystem>

#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "System/FileSystem.h"

namespace velmora {

/// Its operations must not meet: the coordinator sees to that.
class PauseStore {
 public:
  /// No file is touched.
  PauseStore(FileSystem& files, std::filesystem::path file) : files_(files), file_(std::move(file)) {}

  const std::filesystem::path& fileURL() const { return file_; }

  /// Whether a pause is kept. Throws std::system_error.
  bool isKept() const { return files_.exists(file_); }

  /// Keeps a pause, or none. Throws std::system_error, and the storage error when the folder's mode cannot be
  /// set.
  void keep(bool paused) {
    if (paused == isKept()) return;
    if (paused) {
      ensureDirectory(files_, file_.parent_path());
      files_.create(file_, "");
    } else {
      files_.remove(file_);
    }
    files_.flushDirectory(file_.parent_path());
  }

 private:
  FileSystem& files_;
  const std::filesystem::path file_;
};

}  // namespace velmora
