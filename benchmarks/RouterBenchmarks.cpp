#include <benchmark/benchmark.h>

#include "benchmarks/FakeBridge.h"

namespace velmora {
namespace {

void route(benchmark::State& state, LocalControlRequest (*requestFor)(const FakeBridge&)) {
  FakeBridge bridge;
  auto request = requestFor(bridge);
  for (auto _ : state) {
    request.requestId = Uuid::random();
    benchmark::DoNotOptimize(bridge.router.route(request));
  }
}

BENCHMARK_CAPTURE(route, anotherVersion, [](const FakeBridge& bridge) { return bridge.ofAnotherVersion(); });
BENCHMARK_CAPTURE(route, badArguments, [](const FakeBridge& bridge) { return bridge.withBadArguments(); });
BENCHMARK_CAPTURE(route, listTenSessions,
                  [](const FakeBridge& bridge) { return bridge.request(ToolName::listSessions); });
BENCHMARK_CAPTURE(route, sendCommand, [](const FakeBridge& bridge) {
  return bridge.request(ToolName::sendCommand,
                        {{"sessionId", bridge.sessionId.toString()}, {"command", "git status"}});
});
BENCHMARK_CAPTURE(route, read12000Characters, [](const FakeBridge& bridge) {
  return bridge.request(ToolName::readOutput, {{"sessionId", bridge.sessionId.toString()}});
});

}  // namespace
}  // namespace velmora
