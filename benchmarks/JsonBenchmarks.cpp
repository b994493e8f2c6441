#include <benchmark/benchmark.h>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "tests/support/SampleRecords.h"

namespace velmora {
namespace {

template <class Record>
void encodeRecord(benchmark::State& state, const Record& record, JsonFormat format) {
  for (auto _ : state) benchmark::DoNotOptimize(encodeJson(record, format));
  state.SetBytesProcessed(static_cast<std::int64_t>(encodeJson(record, format).size()) * state.iterations());
}

template <class Record>
void decodeRecord(benchmark::State& state, const Record& record, JsonFormat format) {
  const auto text = encodeJson(record, format);
  for (auto _ : state) benchmark::DoNotOptimize(decodeJson<Record>(text, format));
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}

template <class Record>
void registerBoth(const std::string& name, const Record& record, JsonFormat format = JsonFormat::wire) {
  benchmark::RegisterBenchmark(("encode/" + name).c_str(), [=](benchmark::State& state) {
    encodeRecord(state, record, format);
  })->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark(("decode/" + name).c_str(), [=](benchmark::State& state) {
    decodeRecord(state, record, format);
  })->Unit(benchmark::kMicrosecond);
}

// What reading the text alone costs.
void registerParsing(const std::string& name, const std::string& text) {
  benchmark::RegisterBenchmark(("parse/" + name).c_str(), [=](benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(parseJson(text));
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
  })->Unit(benchmark::kMicrosecond);
}

void registerAll() {
  registerBoth("error", testing::sampleError());
  registerBoth("session", testing::sampleSession());
  registerBoth("status", testing::sampleStatus());
  registerBoth("tenSessions", SessionsPayload{std::vector(10, testing::sampleSession())});
  OutputPayload output{.sessionId = testing::sampleId('A'), .returnedCharacters = 12000};
  while (output.text.size() < 12000) output.text += "drwxr-xr-x 2 me staff 4096 한글 폴더\n";
  registerBoth("output12000", output);
  registerBoth("requestRecord", testing::sampleRecord());
  registerBoth("requestRecordStored", testing::sampleRecord(), JsonFormat::store);
  const std::vector<MCPRequestRecord> history(6000, testing::sampleRecord());
  registerBoth("history6MB", history, JsonFormat::store);
  registerParsing("history6MB", encodeJson(history, JsonFormat::store));
}

}  // namespace
}  // namespace velmora

int main(int argc, char** argv) {
  velmora::registerAll();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
