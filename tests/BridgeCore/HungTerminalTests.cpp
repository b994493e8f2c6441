// Two hundred status calls at once while the terminal hangs: each is answered after the five seconds, they
// share one query, and the bridge starts no thread for them.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>
#include <vector>

#include "BridgeCore/BridgeCoordinator.h"
#include "tests/support/CoreFixture.h"

namespace velmora {
namespace {

using std::chrono::steady_clock;

std::size_t threadsOfThisProcess() {
  const std::filesystem::directory_iterator tasks("/proc/self/task");
  return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

class HungTerminalTest : public testing::CoreFixture {
 protected:
  RequestRecorder recorder{time.clock()};
  HistoryStore historyStore{files, directory.path() / "Velmora" / "history.json"};
  BridgeCoordinator coordinator{terminal,      registry,     state,       recorder,
                                settingsStore, historyStore, time.clock()};
};

TEST_F(HungTerminalTest, CostsEachCallerTheDeadlineAndTheBridgeNoThread) {
  constexpr std::size_t callers = 200;
  terminal.statusHangs = true;
  std::thread([] {}).join();  // a sanitizer starts a thread of its own with the first one
  const auto threadsBefore = threadsOfThisProcess();
  std::vector<ToolResult<StatusPayload>> results(callers);
  std::vector<double> seconds(callers);
  std::vector<std::thread> threads;
  for (std::size_t index = 0; index < callers; ++index) {
    threads.emplace_back([&, index] {
      const auto start = steady_clock::now();
      results[index] = coordinator.status(testing::numberedUuid(index), {"caller", std::nullopt});
      seconds[index] = std::chrono::duration<double>(steady_clock::now() - start).count();
    });
  }
  while (recorder.snapshot().size() < callers) std::this_thread::yield();
  EXPECT_LE(threadsOfThisProcess(), threadsBefore + callers) << "only the callers' own threads";
  for (auto& thread : threads) thread.join();
  for (std::size_t index = 0; index < callers; ++index) {
    ASSERT_TRUE(results[index].ok);
    EXPECT_EQ(results[index].data->status.terminalState, TerminalState::unavailable);
    EXPECT_EQ(results[index].data->status.lastError->message,
              "Terminal.app did not respond within five seconds.");
    EXPECT_GE(seconds[index], 4.9);
    EXPECT_LT(seconds[index], 20.0) << "two hundred woken threads share the processor, but wait in no row";
  }
  EXPECT_EQ(terminal.callCount("status"), 1u);
}

}  // namespace
}  // namespace velmora
