#include <gtest/gtest.h>

#include "BridgeCore/BridgeOperationState.h"
#include "tests/support/SampleRecords.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

TEST(BridgeOperationState, RefusesChangesOnlyWhilePaused) {
  BridgeOperationState state(MCPState::active);
  EXPECT_NO_THROW(state.requireMutationAllowed("terminal_send_key", std::nullopt));
  state.set(MCPState::paused);
  EXPECT_EQ(state.current(), MCPState::paused);
  const auto error = testing::structuredError(
      [&] { state.requireMutationAllowed("terminal_send_key", testing::sampleReference()); });
  EXPECT_EQ(error.code, ErrorCode::mcpPaused);
  EXPECT_EQ(error.operation, "terminal_send_key");
  EXPECT_EQ(error.session, testing::sampleReference());
  state.set(MCPState::active);
  EXPECT_NO_THROW(state.requireMutationAllowed("terminal_send_key", std::nullopt));
}

}  // namespace
}  // namespace velmora
