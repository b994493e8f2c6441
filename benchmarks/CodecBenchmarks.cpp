#include <benchmark/benchmark.h>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/LocalControlMessages.h"

namespace velmora {
namespace {

// A request whose frame has about `bytes`.
LocalControlRequest requestOf(std::int64_t bytes) {
  const std::string line = "echo \"안녕\" && ls -la /usr/share\n";
  std::string command;
  // Escaped quotes and line ends take a byte more each.
  while (static_cast<std::int64_t>(command.size() * 12 / 11) + 300 < bytes) command += line;
  return {.requestId = Uuid::random(),
          .client = {"benchmark", "1.0", 1},
          .operation = ToolName::sendCommand,
          .arguments = {{"command", command}, {"sessionId", Uuid::random().toString()}}};
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("bytes")->Arg(256)->Arg(12 << 10)->Arg(1 << 20);
}

void setBytes(benchmark::State& state, const std::string& frame) {
  state.SetBytesProcessed(static_cast<std::int64_t>(frame.size()) * state.iterations());
}

void encodeFrame(benchmark::State& state) {
  const auto request = requestOf(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(LocalControlCodec::frame(request));
  setBytes(state, LocalControlCodec::frame(request));
}
BENCHMARK(encodeFrame)->Apply(sizes);

void frameOfPayload(benchmark::State& state) {
  const auto frame = LocalControlCodec::frame(requestOf(state.range(0)));
  const auto payload = LocalControlCodec::payload(frame);
  for (auto _ : state) benchmark::DoNotOptimize(LocalControlCodec::frameOfPayload(payload));
  setBytes(state, frame);
}
BENCHMARK(frameOfPayload)->Apply(sizes);

void payloadOfFrame(benchmark::State& state) {
  const auto frame = LocalControlCodec::frame(requestOf(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(LocalControlCodec::payload(frame));
  setBytes(state, frame);
}
BENCHMARK(payloadOfFrame)->Apply(sizes);

void decodeFrame(benchmark::State& state) {
  const auto frame = LocalControlCodec::frame(requestOf(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(LocalControlCodec::decode<LocalControlRequest>(frame));
  setBytes(state, frame);
}
BENCHMARK(decodeFrame)->Apply(sizes);

}  // namespace
}  // namespace velmora
