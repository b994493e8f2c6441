#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "BridgeCore/HistoryStore/HistoryQuery.h"
#include "BridgeCore/HistoryStore/HistoryStore.h"
#include "BridgeCore/HistoryStore/RequestRecorder.h"
#include "BridgeModels/Text.h"

namespace velmora {
namespace {

std::string repeated(std::string_view piece, std::size_t bytes) {
  std::string text;
  while (text.size() < bytes) text += piece;
  return text;
}

constexpr std::size_t textBytes = 4 << 20;

void countCharacters(benchmark::State& state, std::string_view piece) {
  const auto text = repeated(piece, textBytes);
  for (auto _ : state) benchmark::DoNotOptimize(characterCount(text));
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK_CAPTURE(countCharacters, ascii, "drwxr-xr-x 2 me staff 4096 Nov 21 07:26 a folder\n");
BENCHMARK_CAPTURE(countCharacters, asciiCrLf, "drwxr-xr-x 2 me staff 4096 Nov 21 07:26 a folder\r\n");
BENCHMARK_CAPTURE(countCharacters, korean, "터미널에서 명령을 실행하고 결과를 읽습니다.\n");
BENCHMARK_CAPTURE(countCharacters, mixed, "빌드 done ✓ in 3.2 s — 경고 0, résumé ok\n");
BENCHMARK_CAPTURE(countCharacters, emoji, "👍🏽👨‍👩‍👧❤️🇰🇷");

void keepTheEnd(benchmark::State& state, std::string_view piece) {
  const auto text = repeated(piece, textBytes);
  for (auto _ : state) benchmark::DoNotOptimize(lastCharacters(text, 12000));
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK_CAPTURE(keepTheEnd, ascii, "drwxr-xr-x 2 me staff 4096 Nov 21 07:26 a folder\n");
BENCHMARK_CAPTURE(keepTheEnd, korean, "터미널에서 명령을 실행하고 결과를 읽습니다.\n");

constexpr std::int64_t recordCount = 10000;
constexpr Date now{817000000.25};

PrivacyRetentionSettings settings() {
  return {.persistentHistoryEnabled = true,
          .storeCommandBody = true,
          .storeOutputPreview = true,
          .maximumRecordCount = recordCount,
          .outputPreviewMaxCharacters = 200};
}

// Oldest first, half of them commands and half of them read output.
std::vector<MCPRequestRecord> history() {
  std::vector<MCPRequestRecord> records;
  for (std::int64_t index = 0; index < recordCount; ++index) {
    MCPRequestRecord record{
        .requestId = Uuid::random(),
        .receivedAt = {now.secondsSinceReferenceDate - static_cast<double>(recordCount - index)},
        .completedAt = now,
        .client = {.name = "an agent", .version = "1.2.3"},
        .toolName = index % 2 == 0 ? ToolName::sendCommand : ToolName::readOutput,
        .sessionSnapshot = SessionReference{.sessionId = Uuid::random()},
        .status = RequestStatus::delivered,
        .durationMilliseconds = index};
    if (index % 2 == 0) {
      record.commandBody = "git status --short && ls -la \"some folder\"";
      record.commandSummary = record.commandBody;
    } else {
      record.outputCharacterCount = 12000;
      record.outputTruncated = true;
      record.outputPreview = repeated("drwxr-xr-x 2 me staff 4096 a folder\n", 200);
    }
    records.push_back(record);
  }
  return records;
}

class StoreFixture : public benchmark::Fixture {
 public:
  void SetUp(benchmark::State&) override {
    folder_ = std::filesystem::temp_directory_path() / ("velmora-benchmark-" + std::to_string(::getpid()));
    records_ = history();
  }
  void TearDown(benchmark::State&) override { std::filesystem::remove_all(folder_); }

 protected:
  std::filesystem::path file() const { return folder_ / "history.json"; }

  PosixFileSystem files_;
  std::vector<MCPRequestRecord> records_;

 private:
  std::filesystem::path folder_;
};

BENCHMARK_F(StoreFixture, retain)(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(HistoryQueryService::retain(records_, settings(), now));
}

BENCHMARK_F(StoreFixture, save)(benchmark::State& state) {
  HistoryStore store(files_, file());
  for (auto _ : state) store.save(records_, settings());
  state.counters["fileBytes"] = static_cast<double>(std::filesystem::file_size(file()));
}

BENCHMARK_F(StoreFixture, load)(benchmark::State& state) {
  HistoryStore store(files_, file());
  store.save(records_, settings());
  for (auto _ : state) benchmark::DoNotOptimize(store.load());
}

BENCHMARK_F(StoreFixture, recorderPersists)(benchmark::State& state) {
  HistoryStore store(files_, file());
  RequestRecorder recorder([] { return now; });
  recorder.replace(records_);
  for (auto _ : state) recorder.persist(store, settings());
}

BENCHMARK_F(StoreFixture, recorderCompletes)(benchmark::State& state) {
  RequestRecorder recorder([] { return now; });
  recorder.replace(records_);
  const auto requestId = records_.back().requestId;
  for (auto _ : state)
    recorder.complete(requestId, RequestStatus::delivered, std::nullopt, std::nullopt, std::nullopt);
}

BENCHMARK_F(StoreFixture, filter)(benchmark::State& state) {
  const HistoryFilter wanted{.query = "FOLDER\" x"};
  for (auto _ : state) benchmark::DoNotOptimize(HistoryQueryService::filter(records_, wanted));
}

}  // namespace
}  // namespace velmora
