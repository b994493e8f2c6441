#include <gtest/gtest.h>

#include "BridgeCore/HistoryStore/StorageError.h"

namespace velmora {
namespace {

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
