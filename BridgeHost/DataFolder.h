// The folder of the settings and the history. One bridge at a time may change what is in it.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "System/FileLock.h"
#include "System/FileSystem.h"
#include "System/Log.h"

namespace velmora {

/// Claims the folder for as long as it lives, by a lock on `bridge.lock` in it. The file also says whether a
/// run was cut short. Where no lock can be had at all (a read-only disk, a file system without locks), the
/// folder is used without one, and the log says so. Belongs to one thread, except for `files`.
class DataFolder {
 public:
  /// Makes the folder when there is none.
  DataFolder(const std::filesystem::path& folder, Log log);

  /// Whether no other bridge has it.
  bool isOurs() const { return problem_.empty(); }
  /// Who has it, in words without a full stop; empty when it is ours.
  const std::string& problem() const { return problem_; }

  /// The folder's files. Every change is refused with std::system_error while another bridge has the folder.
  FileSystem& files() { return *files_; }

  /// Whether an earlier run began and never ended.
  bool formerRunWasCutShort() const { return formerRunWasCutShort_; }
  void beginRun() noexcept;
  void endRun() noexcept;

 private:
  void write(const std::string& state) noexcept;

  const Log log_;
  std::unique_ptr<FileSystem> files_ = std::make_unique<PosixFileSystem>();
  std::optional<FileLock> lock_;
  std::string problem_;
  bool formerRunWasCutShort_ = false;
};

}  // namespace velmora
