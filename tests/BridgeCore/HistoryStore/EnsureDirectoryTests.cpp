#include <gtest/gtest.h>

#include "BridgeCore/HistoryStore/EnsureDirectory.h"
#include "BridgeCore/HistoryStore/StorageError.h"
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

}  // namespace
}  // namespace velmora
