#include <gtest/gtest.h>

#include "BridgeHost/PlatformTerminal.h"

namespace velmora {
namespace {

TEST(PlatformTerminal, IsTmux) {
  EXPECT_EQ(makePlatformTerminal({{"HOME", "/nonexistent"}}, "/nonexistent", Log())->displayName(), "tmux");
}

}  // namespace
}  // namespace velmora
