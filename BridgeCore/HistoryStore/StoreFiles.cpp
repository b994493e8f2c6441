#include "BridgeCore/HistoryStore/StoreFiles.h"

#include <sys/stat.h>

#include <system_error>

namespace velmora {

namespace {

const char* messageOf(StorageFailure failure) {
  switch (failure) {
    case StorageFailure::historyUnreadable:
      return "Stored history could not be read.";
    case StorageFailure::historySchema:
      return "The history schema is not supported.";
    case StorageFailure::historyUnsaved:
      return "History could not be saved locally.";
    case StorageFailure::historyPermissions:
      return "History file permissions could not be applied.";
    case StorageFailure::historyUndeleted:
      return "History could not be deleted.";
    case StorageFailure::settingsSchema:
      return "The settings schema is not supported.";
    case StorageFailure::settingsPermissions:
      return "Settings file permissions could not be applied.";
    case StorageFailure::directoryPermissions:
      return "Application Support permissions could not be applied.";
    case StorageFailure::pauseUnsaved:
      return "The change holds, but could not be kept for the next start.";
  }
  return "";
}

}  // namespace

std::filesystem::path defaultSettingsFile(const Environment& environment) {
  return applicationSupportDirectory(environment) / "Velmora" / "settings.json";
}

std::filesystem::path defaultHistoryFile(const Environment& environment) {
  return applicationSupportDirectory(environment) / "Velmora" / "history.json";
}

std::filesystem::path defaultPermissionFile(const Environment& environment) {
  return applicationSupportDirectory(environment) / "Velmora" / "permissions.json";
}

std::filesystem::path defaultPauseFile(const Environment& environment) {
  return applicationSupportDirectory(environment) / "Velmora" / "paused";
}

void ensureDirectory(FileSystem& files, const std::filesystem::path& directory) {
  files.createDirectories(directory);
  try {
    files.setMode(directory, S_IRWXU);
  } catch (const std::system_error&) {
    throw storageError(StorageFailure::directoryPermissions);
  }
}

std::filesystem::path placeOfUnreadable(const std::filesystem::path& file) {
  auto place = file;
  place += ".unreadable";
  return place;
}

StructuredError storageError(StorageFailure failure) {
  return {.code = ErrorCode::historyStorageFailed,
          .message = messageOf(failure),
          .operation = "history_storage",
          .retryable = true,
          .recoverySuggestion = "Check local disk permissions and available space, then retry."};
}

}  // namespace velmora
