// A request recorder over a fake clock, and a history store in a temporary folder whose files fail on demand.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BridgeCore/HistoryStore/RequestRecorder.h"
#include "tests/support/FakeTime.h"
#include "tests/support/HookedFileSystem.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora::testing {

inline constexpr PrivacyRetentionSettings everything{
    .persistentHistoryEnabled = true, .storeCommandBody = true, .storeOutputPreview = true};

class RecorderFixture : public ::testing::Test {
 protected:
  MCPRequestRecord begin(std::uint64_t number, ToolName tool = ToolName::sendCommand) {
    return recorder.begin(numberedUuid(number), {"an agent", "1.0"}, tool, std::nullopt);
  }

  void complete(std::uint64_t number, RequestStatus status = RequestStatus::delivered) {
    recorder.complete(numberedUuid(number), status, std::nullopt, std::nullopt, std::nullopt);
  }

  void fillIn(std::uint64_t number, const std::optional<std::string>& command,
              const std::optional<std::string>& output, const PrivacyRetentionSettings& settings) {
    recorder.setSensitiveContent(numberedUuid(number), command, output, settings);
  }

  MCPRequestRecord record(std::size_t index = 0) { return recorder.snapshot().at(index); }

  static std::vector<std::uint64_t> numbersOf(const std::vector<MCPRequestRecord>& records) {
    std::vector<std::uint64_t> numbers;
    for (const auto& record : records) numbers.push_back(record.requestId.bytes[15]);
    return numbers;
  }
  std::vector<std::uint64_t> inMemory() { return numbersOf(recorder.snapshot()); }
  std::vector<std::uint64_t> onDisk() { return numbersOf(store.load()); }

  TemporaryDirectory directory;
  HookedFileSystem files;
  HistoryStore store{files, directory / "Velmora" / "history.json"};
  FakeTime time{817000000};
  RequestRecorder recorder{time.clock()};
};

}  // namespace velmora::testing
