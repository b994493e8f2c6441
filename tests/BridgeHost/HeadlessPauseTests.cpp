// A pause that the user makes, and what lifts it.
#include <gmock/gmock.h>

#include <csignal>

#include "tests/BridgeHost/HeadlessFixture.h"

namespace velmora {
namespace {

using testing::eventually;

class HeadlessPause : public testing::HeadlessFixture {
 protected:
  bool refusesToOpenAWindow() {
    const auto response = call(ToolName::createSession);
    return !response.ok && response.error->code == ErrorCode::mcpPaused;
  }
  bool isPaused() {
    return textAt(at(payload(ToolName::status), "status"), "mcpState") == wireName(MCPState::paused);
  }
  std::filesystem::path pauseFile() const { return directory / "data/Velmora/paused"; }
};

TEST_F(HeadlessPause, IsMadeByASignalAndOutlivesTheBridge) {
  startHeadless();
  EXPECT_FALSE(isPaused());
  headless->signal(SIGUSR1);
  EXPECT_TRUE(eventually([&] { return isPaused(); }));
  EXPECT_TRUE(refusesToOpenAWindow());
  EXPECT_TRUE(eventually([&] { return std::filesystem::exists(pauseFile()); }));
  EXPECT_EQ(endHeadless(), 0);
  startHeadless();
  EXPECT_TRUE(isPaused());
  EXPECT_TRUE(refusesToOpenAWindow());
}

TEST_F(HeadlessPause, OutlivesABridgeThatWasKilled) {
  startHeadless();
  headless->signal(SIGUSR1);
  EXPECT_TRUE(eventually([&] { return std::filesystem::exists(pauseFile()); }));
  headless->signal(SIGKILL);
  headless->wait();
  startHeadless();
  EXPECT_TRUE(isPaused());
}

TEST_F(HeadlessPause, HoldsForTheRunThatCannotKeepIt) {
  startHeadless();
  std::filesystem::remove_all(directory / "data");
  testing::writeFile(directory / "data", "no folder");
  headless->signal(SIGUSR1);
  EXPECT_TRUE(eventually([&] { return isPaused(); }));
  headless->signal(SIGTERM);
  headless->wait();
  EXPECT_THAT(headless->restOfErrors(), ::testing::HasSubstr("the pause ends with this run: "));
  headless.reset();
}

}  // namespace
}  // namespace velmora
