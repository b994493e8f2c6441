#include <benchmark/benchmark.h>

#include "BridgeModels/Json/JsonEncoding.h"
#include "benchmarks/FakeBridge.h"

namespace velmora {
namespace {

// From the request's text to the response's.
void answer(benchmark::State& state, LocalControlRequest (*requestFor)(const FakeBridge&)) {
  FakeBridge bridge;
  const auto request = encodeJson(requestFor(bridge));
  for (auto _ : state) benchmark::DoNotOptimize(bridge.router.answer(request));
}

BENCHMARK_CAPTURE(answer, anotherVersion, [](const FakeBridge& bridge) { return bridge.ofAnotherVersion(); });
BENCHMARK_CAPTURE(answer, badArguments, [](const FakeBridge& bridge) { return bridge.withBadArguments(); });
BENCHMARK_CAPTURE(answer, listTenSessions,
                  [](const FakeBridge& bridge) { return bridge.request(ToolName::listSessions); });
BENCHMARK_CAPTURE(answer, sendCommand, [](const FakeBridge& bridge) {
  return bridge.request(ToolName::sendCommand,
                        {{"sessionId", bridge.sessionId.toString()}, {"command", "git status"}});
});
BENCHMARK_CAPTURE(answer, read12000Characters, [](const FakeBridge& bridge) {
  return bridge.request(ToolName::readOutput, {{"sessionId", bridge.sessionId.toString()}});
});

}  // namespace
}  // namespace velmora
