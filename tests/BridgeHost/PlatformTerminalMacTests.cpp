#include <gtest/gtest.h>

#include "BridgeHost/PlatformTerminal.h"

namespace velmora {
namespace {

TEST(PlatformTerminal, CompilesTheScriptForTerminal) {
  EXPECT_EQ(makePlatformTerminal({{"HOME", "/nonexistent"}}, "/nonexistent", Log())->displayName(),
            "Terminal.app");
}

}  // namespace
}  // namespace velmora
