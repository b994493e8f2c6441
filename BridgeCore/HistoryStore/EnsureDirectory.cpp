#include "BridgeCore/HistoryStore/EnsureDirectory.h"

#include <sys/stat.h>

#include <system_error>

#include "BridgeCore/HistoryStore/StorageError.h"

namespace velmora {

void ensureDirectory(FileSystem& files, const std::filesystem::path& directory) {
  files.createDirectories(directory);
  try {
    files.setMode(directory, S_IRWXU);
  } catch (const std::system_error&) {
    throw storageError(StorageFailure::directoryPermissions);
  }
}

}  // namespace velmora
