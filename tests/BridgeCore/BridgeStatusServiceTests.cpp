#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "BridgeCore/BridgeStatusService.h"
#include "tests/support/FakeTerminal.h"
#include "tests/support/FakeTime.h"
#include "tests/support/SampleRecords.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::numberedUuid;
using testing::tab;

class BridgeStatusServiceTest : public ::testing::Test {
 protected:
  BridgeStatusService makeService(std::chrono::nanoseconds deadline = 5s) {
    return {terminal, state, registry, time.clock(), deadline};
  }

  testing::FakeTerminal terminal;
  testing::FakeTime time{4242};
  BridgeOperationState state{MCPState::active};
  SessionRegistry registry{numberedUuid(7777), testing::countingUuids()};
};

TEST_F(BridgeStatusServiceTest, ReportsATerminalWithWindows) {
  terminal.runtimeStatus = {.running = true, .windowCount = 2, .permission = AutomationPermission::granted};
  const auto sessions =
      registry.reconcile({tab("/dev/a", 1, 1), tab("/dev/b", 2, 2), tab("/dev/c", 3, 3), tab("/dev/d", 4, 4)},
                         SessionPolicy::safe, Date{});
  registry.setPermission(SessionPermission::readOnly, sessions[0].sessionId);
  registry.setPermission(SessionPermission::blocked, sessions[1].sessionId);
  registry.setPermission(SessionPermission::allowed, sessions[2].sessionId);
  EXPECT_EQ(makeService().snapshot(), (BridgeStatus{.mcpState = MCPState::active,
                                                    .terminalState = TerminalState::available,
                                                    .automationPermission = AutomationPermission::granted,
                                                    .windowCount = 2,
                                                    .sessionCount = 4,
                                                    .controllableSessionCount = 2,
                                                    .updatedAt = Date{4242}}));
}

TEST_F(BridgeStatusServiceTest, CountsNoSessionsWithoutWindows) {
  registry.reconcile({tab("/dev/a")}, SessionPolicy::safe, Date{});
  terminal.runtimeStatus = {.running = true, .windowCount = 0, .permission = AutomationPermission::granted};
  auto service = makeService();
  auto status = service.snapshot();
  EXPECT_EQ(status.terminalState, TerminalState::noWindows);
  EXPECT_EQ(status.sessionCount, 0);
  EXPECT_EQ(status.automationPermission, AutomationPermission::granted);
  terminal.runtimeStatus = {};
  status = service.snapshot();
  EXPECT_EQ(status.terminalState, TerminalState::notRunning);
  EXPECT_EQ(status.automationPermission, AutomationPermission::unknown);
  EXPECT_EQ(status.sessionCount, 0);
}

TEST_F(BridgeStatusServiceTest, CarriesPauseClientsAndWhatWasNoted) {
  auto service = makeService();
  state.set(MCPState::paused);
  service.updateClients({testing::sampleClient()});
  service.note(numberedUuid(1), testing::sampleError());
  auto status = service.snapshot();
  EXPECT_EQ(status.mcpState, MCPState::paused);
  EXPECT_EQ(status.connectedClients, std::vector{testing::sampleClient()});
  EXPECT_EQ(status.lastRequestId, numberedUuid(1));
  EXPECT_EQ(status.lastError, testing::sampleError());
  service.note(numberedUuid(2), std::nullopt);
  status = service.snapshot();
  EXPECT_EQ(status.lastRequestId, numberedUuid(2));
  EXPECT_EQ(status.lastError, std::nullopt);
}

TEST_F(BridgeStatusServiceTest, AFailedQueryIsASnapshotThatSaysWhy) {
  registry.reconcile({tab("/dev/a")}, SessionPolicy::safe, Date{});
  auto service = makeService();
  service.note(numberedUuid(1), testing::sampleError());
  terminal.failWith("status", PlatformError("x", -1708));
  auto status = service.snapshot();
  EXPECT_EQ(status.terminalState, TerminalState::unavailable);
  EXPECT_EQ(status.automationPermission, AutomationPermission::unknown);
  EXPECT_EQ(status.windowCount + status.sessionCount + status.controllableSessionCount, 0);
  ASSERT_TRUE(status.lastError);
  EXPECT_EQ(status.lastError->code, ErrorCode::appleScriptExecutionFailed);
  EXPECT_EQ(status.lastError->operation, "terminal_status");
  EXPECT_EQ(status.lastError->session, std::nullopt);
  EXPECT_EQ(status.lastRequestId, numberedUuid(1));

  terminal.failures.clear();
  EXPECT_EQ(service.snapshot().lastError, testing::sampleError())
      << "a failed snapshot must not change what is stored";

  terminal.failWith("status", PlatformError("x", -1743));
  EXPECT_EQ(service.snapshot().automationPermission, AutomationPermission::denied);
}

TEST_F(BridgeStatusServiceTest, AnErrorInTheAdaptersWordsNamesTheTool) {
  terminal.failWith("status",
                    StructuredError{.code = ErrorCode::terminalNotAvailable, .message = "no answer"});
  const auto status = makeService(5s).snapshot();
  EXPECT_EQ(status.lastError->message, "no answer");
  EXPECT_EQ(status.lastError->operation, "terminal_status");
}

TEST_F(BridgeStatusServiceTest, AHungTerminalCostsTheDeadlineAndItsLateAnswerChangesNothing) {
  terminal.statusHangs = true;
  auto service = makeService(1ms);
  const auto status = service.snapshot();
  EXPECT_EQ(status.terminalState, TerminalState::unavailable);
  ASSERT_TRUE(status.lastError);
  EXPECT_EQ(status.lastError->message, "Terminal.app did not respond within five seconds.");
  terminal.release();
  EXPECT_EQ(status.terminalState, TerminalState::unavailable);
  terminal.statusHangs = false;
  EXPECT_EQ(service.snapshot().terminalState, TerminalState::available);
}

TEST_F(BridgeStatusServiceTest, SnapshotsDuringAHangShareOneQuery) {
  terminal.statusHangs = true;
  auto service = makeService(1ms);
  for (int count = 0; count < 50; ++count) service.snapshot();
  EXPECT_EQ(terminal.callCount("status"), 1u);
  terminal.release();
  terminal.statusHangs = false;
  service.snapshot();
  EXPECT_EQ(terminal.callCount("status"), 2u);
}

TEST(StatusDeadlineGate, TheFirstOfAnswerAndDeadlineDecides) {
  std::promise<TerminalRuntimeStatus> query;
  const StatusDeadlineGate gate(query.get_future().share());
  EXPECT_EQ(testing::structuredError([&] { gate.wait(0ns); }).code, ErrorCode::terminalNotAvailable);
  query.set_value({.running = true});
  EXPECT_TRUE(gate.wait(0ns).running);
}

TEST(StatusDeadlineGate, PassesTheQuerysErrorOn) {
  std::promise<TerminalRuntimeStatus> query;
  query.set_exception(std::make_exception_ptr(PlatformError("x", -600)));
  const StatusDeadlineGate gate(query.get_future().share());
  EXPECT_THROW(gate.wait(5s), PlatformError);
}

}  // namespace
}  // namespace velmora
