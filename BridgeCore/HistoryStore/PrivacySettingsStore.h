// Owns the user's settings: the value that every request reads, and the file that keeps it.
#pragma once

#include <filesystem>

#include "BridgeModels/PrivacyRetentionSettings.h"
#include "System/FileSystem.h"
#include "System/Log.h"
#include "System/Mutex.h"

namespace velmora {

/// A monitor: every operation is atomic, file access included. The value in memory changes only when a load
/// or a save succeeded as a whole. Errors of the file system (std::system_error) and of the decoder
/// (JsonDecodeError) pass through; the store's own are StructuredErrors.
class PrivacySettingsStore {
 public:
  /// No file is touched. `initial` is current, as it is, until a load or a save.
  PrivacySettingsStore(FileSystem& files, std::filesystem::path file, const PrivacyRetentionSettings& initial,
                       Log log = {});

  const std::filesystem::path& fileURL() const { return file_; }

  PrivacyRetentionSettings current() const;

  /// Takes the settings from the file, brought into their ranges, and returns them; without a file the
  /// current value stays and is returned. The file is not written. What is odd in it goes to the log: keys
  /// that no setting has, numbers out of their ranges, and why it could not be read.
  PrivacyRetentionSettings load();

  /// Writes the settings, brought into their ranges, and makes them current. A file that could not be read is
  /// kept as `placeOfUnreadable`.
  void save(PrivacyRetentionSettings settings);

 private:
  PrivacyRetentionSettings read() const;

  FileSystem& files_;
  const std::filesystem::path file_;
  const Log log_;
  mutable Mutex mutex_;
  PrivacyRetentionSettings settings_ VELMORA_GUARDED_BY(mutex_);
  bool fileIsUnreadable_ VELMORA_GUARDED_BY(mutex_) = false;
};

}  // namespace velmora
