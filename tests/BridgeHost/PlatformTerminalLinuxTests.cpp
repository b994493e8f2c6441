#include <gtest/gtest.h>

#include "BridgeHost/PlatformTerminal.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

TEST(PlatformTerminal, IsTmux) {
  EXPECT_EQ(makePlatformTerminal({{"HOME", "/nonexistent"}}, "/nonexistent", Log())->displayName(), "tmux");
}

TEST(PlatformTerminal, IsThereThoughTheSettingsCannotBeRead) {
  const TemporaryDirectory directory;
  const auto file = directory / "Velmora/settings.json";
  for (const auto* text : {"[", R"({"schemaVersion":99,"settings":{}})"}) {
    std::filesystem::create_directories(file.parent_path());
    testing::writeFile(file, text);
    const Environment environment{{"HOME", directory.path().string()},
                                  {"XDG_DATA_HOME", directory.path().string()}};
    EXPECT_EQ(makePlatformTerminal(environment, directory.path(), Log())->displayName(), "tmux") << text;
  }
}

}  // namespace
}  // namespace velmora
