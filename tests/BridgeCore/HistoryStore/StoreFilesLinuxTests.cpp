#include <gtest/gtest.h>

#include <stdexcept>

#include "BridgeCore/HistoryStore/StoreFiles.h"

namespace velmora {
namespace {

TEST(ApplicationSupportDirectory, IsTheDataHomeWhenThatIsAbsolute) {
  EXPECT_EQ(applicationSupportDirectory({{"XDG_DATA_HOME", "/data"}, {"HOME", "/home/me"}}), "/data");
  EXPECT_EQ(applicationSupportDirectory({{"XDG_DATA_HOME", "/data"}}), "/data");
}

TEST(ApplicationSupportDirectory, IsBelowTheHomeOtherwise) {
  const std::filesystem::path expected = "/home/me/.local/share";
  EXPECT_EQ(applicationSupportDirectory({{"HOME", "/home/me"}}), expected);
  EXPECT_EQ(applicationSupportDirectory({{"XDG_DATA_HOME", ""}, {"HOME", "/home/me"}}), expected);
  EXPECT_EQ(applicationSupportDirectory({{"XDG_DATA_HOME", "data"}, {"HOME", "/home/me"}}), expected);
}

TEST(ApplicationSupportDirectory, FailsWithoutAnyHome) {
  EXPECT_THROW(applicationSupportDirectory({}), std::runtime_error);
  EXPECT_THROW(applicationSupportDirectory({{"HOME", "relative"}}), std::runtime_error);
}

TEST(ApplicationSupportDirectory, HoldsBothFilesInOneFolder) {
  const Environment environment{{"XDG_DATA_HOME", "/data"}};
  EXPECT_EQ(defaultSettingsFile(environment), "/data/Velmora/settings.json");
  EXPECT_EQ(defaultHistoryFile(environment), "/data/Velmora/history.json");
}

}  // namespace
}  // namespace velmora
