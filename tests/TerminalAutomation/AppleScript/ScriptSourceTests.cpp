#include <gtest/gtest.h>

#include "TerminalAutomation/AppleScript/ScriptSource.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class ScriptSourceTest : public ::testing::Test {
 protected:
  void put(const std::string& directory, const std::string& content, const std::string& inBundle = "") {
    testing::writeFile(directory_ / directory / "Velmora_TerminalAutomation.bundle" / inBundle /
                           "TerminalBridge.applescript",
                       content);
  }
  std::string source() {
    return scriptSourceIn({directory_ / "resources", directory_ / "module", directory_ / "main"});
  }

  TemporaryDirectory directory_;
};

TEST_F(ScriptSourceTest, TheFirstDirectoryWithTheBundleWins) {
  put("main", "from main");
  EXPECT_EQ(source(), "from main");
  put("module", "from module");
  EXPECT_EQ(source(), "from module");
  put("resources", "from resources");
  EXPECT_EQ(source(), "from resources");
}

TEST_F(ScriptSourceTest, AFileIsNoBundle) {
  testing::writeFile(directory_ / "resources/Velmora_TerminalAutomation.bundle", "a file");
  put("main", "from main");
  EXPECT_EQ(source(), "from main");
}

TEST_F(ScriptSourceTest, ReadsBothLayoutsOfABundle) {
  put("main", "on bridgeStatus() -- 안녕", "Contents/Resources");
  EXPECT_EQ(source(), "on bridgeStatus() -- 안녕");
}

TEST_F(ScriptSourceTest, AMissingResourceIsAnEmptyTextAlsoWhenALaterBundleHasOne) {
  std::filesystem::create_directories(directory_ / "resources/Velmora_TerminalAutomation.bundle");
  put("main", "from main");
  EXPECT_EQ(source(), "");
}

TEST_F(ScriptSourceTest, AFileThatIsNotUtf8IsAnEmptyText) {
  put("main", "on \xff");
  EXPECT_EQ(source(), "");
}

using ScriptSourceDeathTest = ScriptSourceTest;

TEST_F(ScriptSourceDeathTest, WithoutABundleTheProcessStops) {
  EXPECT_DEATH(source(), "unable to find bundle named Velmora_TerminalAutomation");
  EXPECT_DEATH(scriptSourceIn({}), "unable to find bundle named Velmora_TerminalAutomation");
}

}  // namespace
}  // namespace velmora
