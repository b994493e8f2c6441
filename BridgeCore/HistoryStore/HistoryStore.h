// Keeps the request history in one JSON file, when the user wants it kept, and removes from it what the
// settings do not allow to be stored.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeModels/Date.h"
#include "BridgeModels/MCPRequestRecord.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "System/FileSystem.h"
#include "System/Log.h"
#include "System/Mutex.h"

namespace velmora {

/// A monitor: every operation is atomic, file access included, so a save and a deletion never interleave.
/// Failures are storage errors (StructuredError), whose cause goes to the log. A failed save leaves the
/// previous file as it was. Where the file is a link, a save or a deletion also removes what it leads to: no
/// older history stays behind.
class HistoryStore {
 public:
  /// No file is touched.
  HistoryStore(FileSystem& files, std::filesystem::path file, Log log = {});

  const std::filesystem::path& fileURL() const { return file_; }

  /// The stored records, newest first; none when there is no file. A file that cannot be read stays, and
  /// the next save keeps it as `placeOfUnreadable` instead of writing over it.
  std::vector<MCPRequestRecord> load();

  /// Deletes an unreadable file that was kept; with a date, only when it was last written before then.
  /// Nothing is thrown; a failure goes to the log.
  void forgetUnreadable(const std::optional<Date>& then = std::nullopt) noexcept;

  /// Replaces the file with `records`, without the command text and output previews that the settings do
  /// not allow. Without persistent history it deletes the file.
  void save(std::vector<MCPRequestRecord> records, const PrivacyRetentionSettings& settings);

  void delete_();

  /// Deletes a history file, an unreadable one kept beside it and what a crash left of a save.
  static void delete_(FileSystem& files, const std::filesystem::path& file);

 private:
  void write(const std::vector<MCPRequestRecord>& records) VELMORA_REQUIRES(mutex_);
  StructuredError failed(StorageFailure failure, const std::string& cause) const;

  FileSystem& files_;
  const std::filesystem::path file_;
  const Log log_;
  Mutex mutex_;
  bool fileIsUnreadable_ VELMORA_GUARDED_BY(mutex_) = false;
};

}  // namespace velmora
