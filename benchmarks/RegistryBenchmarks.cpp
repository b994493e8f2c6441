#include <benchmark/benchmark.h>

#include "BridgeCore/SessionRegistry.h"
#include "tests/support/FakeTerminal.h"

namespace velmora {
namespace {

constexpr Date now{817000000};

std::vector<TerminalTabSnapshot> tabs(std::int64_t count) {
  std::vector<TerminalTabSnapshot> result;
  for (std::int64_t number = 1; number <= count; ++number) {
    result.push_back(testing::tab("/dev/pts/" + std::to_string(number), number, number));
  }
  return result;
}

void counts(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("tabs")->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);
}

void reconcileAgain(benchmark::State& state) {
  const auto snapshots = tabs(state.range(0));
  SessionRegistry registry(Uuid::random(), Uuid::random);
  registry.reconcile(snapshots, SessionPolicy::safe, now);
  for (auto _ : state) benchmark::DoNotOptimize(registry.reconcile(snapshots, SessionPolicy::safe, now));
  state.SetItemsProcessed(state.range(0) * state.iterations());
}
BENCHMARK(reconcileAgain)->Apply(counts);

void reconcileFirst(benchmark::State& state) {
  const auto snapshots = tabs(state.range(0));
  for (auto _ : state) {
    SessionRegistry registry(Uuid::random(), Uuid::random);
    benchmark::DoNotOptimize(registry.reconcile(snapshots, SessionPolicy::safe, now));
  }
  state.SetItemsProcessed(state.range(0) * state.iterations());
}
BENCHMARK(reconcileFirst)->Apply(counts);

void validate(benchmark::State& state) {
  const auto snapshots = tabs(state.range(0));
  SessionRegistry registry(Uuid::random(), Uuid::random);
  const auto id = registry.reconcile(snapshots, SessionPolicy::safe, now).back().sessionId;
  for (auto _ : state) benchmark::DoNotOptimize(registry.validate(id, snapshots, now));
}
BENCHMARK(validate)->Apply(counts);

}  // namespace
}  // namespace velmora
