// What the settings and the history share: where their files lie, who may read them, and how they fail.
#pragma once

#include <filesystem>

#include "BridgeModels/StructuredError.h"
#include "System/ApplicationSupport.h"
#include "System/FileSystem.h"

namespace velmora {

// Where they are; these throw std::runtime_error when the environment names no home.
std::filesystem::path defaultSettingsFile(const Environment& environment);
std::filesystem::path defaultHistoryFile(const Environment& environment);
std::filesystem::path defaultPermissionFile(const Environment& environment);
std::filesystem::path defaultPauseFile(const Environment& environment);

/// Creates `directory`, with those above it that are missing, and sets its mode to 0700 even when it existed.
/// Throws what the file system reports for the creation, a storage error for the mode.
void ensureDirectory(FileSystem& files, const std::filesystem::path& directory);

/// "history.json.unreadable" for "history.json": where a save keeps what could not be read.
std::filesystem::path placeOfUnreadable(const std::filesystem::path& file);

enum class StorageFailure {
  historyUnreadable,
  historySchema,
  historyUnsaved,
  historyPermissions,
  historyUndeleted,
  settingsSchema,
  settingsPermissions,
  directoryPermissions,
  pauseUnsaved,
};

StructuredError storageError(StorageFailure failure);

}  // namespace velmora
