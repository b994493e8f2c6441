// What the core itself takes for a call: a terminal that answers at once, no history kept, and as many
// records in memory as the settings allow by default.
#include "benchmarks/FakeBridge.h"
#include "benchmarks/SideBySide.h"

namespace velmora {
namespace {

constexpr int recordCount = 1000;
constexpr double mostMicroseconds = 15;
const ClientIdentitySummary client{"benchmark", "1.0"};

template <class Call>
void withAThousandRecords(benchmark::State& state, double budget, const Call& call) {
  FakeBridge bridge;
  for (int number = 0; number < recordCount; ++number) call(bridge);
  std::vector<double> microseconds;
  constexpr int inARow = 100;
  for (auto _ : state) {
    microseconds.push_back(microsecondsOf(inARow, [&] { call(bridge); }));
    state.SetIterationTime(microseconds.back() * inARow / 1e6);
  }
  state.counters["value"] = quantile(microseconds, 0.25);
  state.counters["medianUs"] = median(microseconds);
  if (budget > 0) state.counters["budget"] = budget;
}

void command(benchmark::State& state) {
  withAThousandRecords(state, mostMicroseconds, [](FakeBridge& bridge) {
    benchmark::DoNotOptimize(
        bridge.coordinator.sendCommand(Uuid::random(), client, {bridge.sessionId, "git status"}));
  });
}
BENCHMARK(command)->UseManualTime();

void key(benchmark::State& state) {
  withAThousandRecords(state, /*budget=*/0, [](FakeBridge& bridge) {
    benchmark::DoNotOptimize(
        bridge.coordinator.sendKey(Uuid::random(), client, {bridge.sessionId, TerminalKey::tab, 1}));
  });
}
BENCHMARK(key)->UseManualTime();

}  // namespace
}  // namespace velmora
