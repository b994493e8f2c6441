#include <gtest/gtest.h>

#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "tests/support/Files.h"
#include "tests/support/HookedFileSystem.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using testing::modeOf;

TEST(EnsureDirectory, CreatesADirectoryThatOnlyTheUserMayEnter) {
  const TemporaryDirectory directory;
  PosixFileSystem files;
  ensureDirectory(files, directory / "a" / "b");
  EXPECT_EQ(modeOf(directory / "a" / "b"), 0700u);
}

TEST(EnsureDirectory, ClosesADirectoryThatStoodOpen) {
  const TemporaryDirectory directory;
  PosixFileSystem files;
  std::filesystem::create_directory(directory / "a");
  std::filesystem::permissions(directory / "a", std::filesystem::perms(0777));
  ensureDirectory(files, directory / "a");
  EXPECT_EQ(modeOf(directory / "a"), 0700u);
}

TEST(EnsureDirectory, PassesOnWhyItCouldNotCreate) {
  const TemporaryDirectory directory;
  PosixFileSystem files;
  testing::writeFile(directory / "file", "x");
  EXPECT_THROW(ensureDirectory(files, directory / "file" / "below"), std::system_error);
}

TEST(EnsureDirectory, FailsWithTheStorageErrorWhenTheModeCannotBeSet) {
  const TemporaryDirectory directory;
  testing::HookedFileSystem files;
  files.failOn("setMode", std::errc::operation_not_permitted);
  EXPECT_EQ(testing::structuredError([&] { ensureDirectory(files, directory / "a"); }),
            storageError(StorageFailure::directoryPermissions));
}

TEST(StorageError, CarriesTheSentenceOfItsFailure) {
  EXPECT_EQ(storageError(StorageFailure::historyUnreadable).message, "Stored history could not be read.");
  EXPECT_EQ(storageError(StorageFailure::historySchema).message, "The history schema is not supported.");
  EXPECT_EQ(storageError(StorageFailure::historyUnsaved).message, "History could not be saved locally.");
  EXPECT_EQ(storageError(StorageFailure::historyPermissions).message,
            "History file permissions could not be applied.");
  EXPECT_EQ(storageError(StorageFailure::historyUndeleted).message, "History could not be deleted.");
  EXPECT_EQ(storageError(StorageFailure::settingsSchema).message, "The settings schema is not supported.");
  EXPECT_EQ(storageError(StorageFailure::settingsPermissions).message,
            "Settings file permissions could not be applied.");
  EXPECT_EQ(storageError(StorageFailure::directoryPermissions).message,
            "Application Support permissions could not be applied.");
}

TEST(StorageError, IsRetryableAndNamesNoSession) {
  const auto error = storageError(StorageFailure::historyUnsaved);
  EXPECT_EQ(error.code, ErrorCode::historyStorageFailed);
  EXPECT_EQ(error.operation, "history_storage");
  EXPECT_EQ(error.session, std::nullopt);
  EXPECT_TRUE(error.retryable);
  EXPECT_EQ(error.recoverySuggestion, "Check local disk permissions and available space, then retry.");
}

}  // namespace
}  // namespace velmora
