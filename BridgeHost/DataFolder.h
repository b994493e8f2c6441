// The folder of the settings and the history. One bridge at a time may change what is in it.
#pragma once

#include <atomic>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "BridgeHost/OtherBridge.h"
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

  /// Tries again when another bridge had it; returns whether it is ours.
  bool claim();
  /// Whether no other bridge had it when it was claimed last.
  bool isOurs() const { return problem_.empty(); }
  /// Who has it, in words without a full stop; empty when it is ours.
  const std::string& problem() const { return problem_; }
  /// The bridge that has it now, as its lock tells; nothing when it is ours.
  std::optional<OtherBridge> holder() const;

  /// The folder's files. Every change is refused with std::system_error while another bridge has the folder.
  FileSystem& files() { return files_; }

  /// Whether an earlier run began and never ended.
  bool formerRunWasCutShort() const { return formerRunWasCutShort_; }
  void beginRun() noexcept;
  void endRun() noexcept;

 private:
  void write(const std::string& state) noexcept;

  /// Refuses every change while another bridge has the folder.
  class Files final : public PosixFileSystem {
   public:
    void open() { closed_ = false; }

    void create(const std::filesystem::path& path, std::string_view bytes) override;
    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void remove(const std::filesystem::path& path) override;
    void setMode(const std::filesystem::path& path, mode_t mode) override;
    void createDirectories(const std::filesystem::path& path) override;
    void flushDirectory(const std::filesystem::path& path) override;

   private:
    void refuseWhenClosed(const std::filesystem::path& path) const;

    std::atomic<bool> closed_ = true;
  };

  const std::filesystem::path folder_;
  const Log log_;
  Files files_;
  std::optional<FileLock> lock_;
  std::string problem_;
  bool formerRunWasCutShort_ = false;
};

}  // namespace velmora
