#include <gtest/gtest.h>

#include "BridgeCore/HistoryStore/PauseStore.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

TEST(PauseStore, KeepsAPauseInAFileOfTheUsersOwnUntilThereIsNone) {
  TemporaryDirectory directory;
  PosixFileSystem files;
  PauseStore store(files, directory / "Velmora/paused");
  EXPECT_FALSE(store.isKept());
  store.keep(false);
  EXPECT_FALSE(std::filesystem::exists(directory / "Velmora"));
  store.keep(true);
  store.keep(true);
  EXPECT_TRUE(PauseStore(files, directory / "Velmora/paused").isKept());
  EXPECT_EQ(testing::modeOf(directory / "Velmora/paused"), 0600u);
  EXPECT_EQ(testing::modeOf(directory / "Velmora"), 0700u);
  store.keep(false);
  EXPECT_FALSE(store.isKept());
}

}  // namespace
}  // namespace velmora
