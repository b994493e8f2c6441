#include <gtest/gtest.h>

#include <stdexcept>

#include "BridgeCore/HistoryStore/StoreFiles.h"

namespace velmora {
namespace {

TEST(ApplicationSupportDirectory, IsInTheLibraryOfTheHome) {
  EXPECT_EQ(applicationSupportDirectory({{"XDG_DATA_HOME", "/data"}, {"HOME", "/Users/me"}}),
            "/Users/me/Library/Application Support");
}

TEST(ApplicationSupportDirectory, FailsWithoutAHome) {
  EXPECT_THROW(applicationSupportDirectory({}), std::runtime_error);
  EXPECT_THROW(applicationSupportDirectory({{"HOME", "relative"}}), std::runtime_error);
}

TEST(ApplicationSupportDirectory, HoldsBothFilesInOneFolder) {
  const Environment environment{{"HOME", "/Users/me"}};
  EXPECT_EQ(defaultSettingsFile(environment), "/Users/me/Library/Application Support/Velmora/settings.json");
  EXPECT_EQ(defaultHistoryFile(environment), "/Users/me/Library/Application Support/Velmora/history.json");
}

}  // namespace
}  // namespace velmora
