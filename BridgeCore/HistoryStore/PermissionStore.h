// Keeps the permissions that the user gave to tabs in one small JSON file, so that they outlive a restart.
#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/TerminalSession.h"
#include "System/FileSystem.h"
#include "System/Mutex.h"

namespace velmora {

struct KeptPermission {
  TabIdentity tab{};
  SessionPermission permission = SessionPermission::blocked;

  bool operator==(const KeptPermission&) const = default;
};
BOOST_DESCRIBE_STRUCT(KeptPermission, (), (tab, permission))

/// A monitor over its file, `permissions.json`. A failed save leaves the previous file as it was.
class PermissionStore {
 public:
  /// As many as are kept; a user who sets more loses the oldest.
  static constexpr std::size_t mostKept = 500;

  /// No file is touched.
  PermissionStore(FileSystem& files, std::filesystem::path file) : files_(files), file_(std::move(file)) {}

  const std::filesystem::path& fileURL() const { return file_; }

  /// What was saved last, none when there is no file. Throws whatever reading or decoding throws.
  std::vector<KeptPermission> load();

  /// Replaces the file; only the last `mostKept` are kept. Without any it removes the file. Throws
  /// std::system_error, and the storage error when the folder's mode cannot be set.
  void save(std::vector<KeptPermission> kept);

 private:
  FileSystem& files_;
  const std::filesystem::path file_;
  Mutex mutex_;
};

}  // namespace velmora
