#include <gtest/gtest.h>

#include <thread>

#include "TerminalAutomation/Tmux/DesktopTerminal.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::writeFile;

class DesktopTerminalTest : public ::testing::Test {
 protected:
  void addTerminal(const std::string& name) {
    const auto path = directory_ / "bin" / name;
    writeFile(path, "#!/bin/sh\nfor word; do echo \"[$word]\"; done > " + (directory_ / "new").string() +
                        "\necho \"$TMUX\" >> " + (directory_ / "new").string() + "\nmv " +
                        (directory_ / "new").string() + " " + (directory_ / name).string() + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  }
  bool open(Environment environment) {
    environment["PATH"] = (directory_ / "bin").string() + ":/usr/bin:/bin";
    environment["TMUX"] = "/a,1,2";
    return SystemDesktopTerminal(environment).open({"tmux", "a b", "$(x)", "';"});
  }
  std::string words(const std::string& name) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!std::filesystem::exists(directory_ / name) && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return contentOf(directory_ / name);
  }

  TemporaryDirectory directory_;
};

TEST_F(DesktopTerminalTest, OpensTheChosenTerminalWithTheWordsAsTheyAre) {
  addTerminal("xdg-terminal-exec");
  addTerminal("x-terminal-emulator");
  EXPECT_TRUE(open({{"DISPLAY", ":9"}}));
  EXPECT_EQ(words("xdg-terminal-exec"), "[tmux]\n[a b]\n[$(x)]\n[';]\n\n");
}

TEST_F(DesktopTerminalTest, OpensNothingWithoutADisplay) {
  addTerminal("xdg-terminal-exec");
  EXPECT_FALSE(open({}));
}

}  // namespace
}  // namespace velmora
