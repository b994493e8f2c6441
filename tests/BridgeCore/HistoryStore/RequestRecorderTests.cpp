#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <set>
#include <thread>

#include "BridgeCore/HistoryStore/RequestRecorder.h"
#include "BridgeCore/HistoryStore/StorageError.h"
#include "BridgeModels/Text.h"
#include "tests/support/FakeTime.h"
#include "tests/support/Files.h"
#include "tests/support/HookedFileSystem.h"
#include "tests/support/SampleRecords.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::numberedUuid;

constexpr PrivacyRetentionSettings everything{
    .persistentHistoryEnabled = true, .storeCommandBody = true, .storeOutputPreview = true};

class RequestRecorderTest : public ::testing::Test {
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
  testing::HookedFileSystem files;
  HistoryStore store{files, directory / "Velmora" / "history.json"};
  testing::FakeTime time{817000000};
  RequestRecorder recorder{time.clock()};
};

TEST_F(RequestRecorderTest, StartsEmpty) { EXPECT_THAT(recorder.snapshot(), IsEmpty()); }

TEST_F(RequestRecorderTest, OpensARecordInProcessing) {
  const auto begun =
      recorder.begin(numberedUuid(1), {"an agent", "1.0"}, ToolName::readOutput, testing::sampleReference());
  EXPECT_EQ(begun, (MCPRequestRecord{.requestId = numberedUuid(1),
                                     .receivedAt = time.now(),
                                     .client = {"an agent", "1.0"},
                                     .toolName = ToolName::readOutput,
                                     .sessionSnapshot = testing::sampleReference(),
                                     .status = RequestStatus::processing}));
  EXPECT_THAT(recorder.snapshot(), ElementsAre(begun));
}

TEST_F(RequestRecorderTest, AppendsRecordsInTheOrderOfTheCalls) {
  begin(2);
  begin(1);
  begin(3);
  complete(3);
  complete(2);
  EXPECT_THAT(inMemory(), ElementsAre(2, 1, 3));
}

TEST_F(RequestRecorderTest, ClosesARecord) {
  begin(1);
  time.advance(1.25);
  recorder.complete(numberedUuid(1), RequestStatus::failed, 12, true, testing::sampleError());
  EXPECT_EQ(record().status, RequestStatus::failed);
  EXPECT_EQ(record().completedAt, time.now());
  EXPECT_EQ(record().durationMilliseconds, 1250);
  EXPECT_EQ(record().outputCharacterCount, 12);
  EXPECT_EQ(record().outputTruncated, true);
  EXPECT_EQ(record().error, testing::sampleError());
}

TEST_F(RequestRecorderTest, ClosesARecordAgainWithWhatCameLast) {
  begin(1);
  recorder.complete(numberedUuid(1), RequestStatus::readComplete, 12, true, std::nullopt);
  recorder.complete(numberedUuid(1), RequestStatus::rejected, std::nullopt, std::nullopt,
                    testing::sampleError());
  EXPECT_EQ(record().status, RequestStatus::rejected);
  EXPECT_EQ(record().outputCharacterCount, std::nullopt);
  EXPECT_EQ(record().outputTruncated, std::nullopt);
  EXPECT_EQ(record().error, testing::sampleError());
}

TEST_F(RequestRecorderTest, CutsTheDurationTowardsZero) {
  begin(1);
  time.advance(0.9990234375);
  complete(1);
  EXPECT_EQ(record().durationMilliseconds, 999);
}

TEST_F(RequestRecorderTest, NeverCountsANegativeDuration) {
  begin(1);
  time.advance(-60);
  complete(1);
  EXPECT_EQ(record().durationMilliseconds, 0);
  EXPECT_EQ(record().completedAt, time.now());
}

TEST_F(RequestRecorderTest, IgnoresUnknownRequests) {
  begin(1);
  const auto before = recorder.snapshot();
  complete(2);
  fillIn(2, "ls", "output", everything);
  EXPECT_EQ(recorder.snapshot(), before);
}

TEST_F(RequestRecorderTest, MeansTheFirstOfTwoRecordsWithTheSameId) {
  begin(1);
  begin(1);
  complete(1);
  fillIn(1, "ls", {}, everything);
  EXPECT_EQ(record(0).status, RequestStatus::delivered);
  EXPECT_EQ(record(0).commandBody, "ls");
  EXPECT_EQ(record(1).status, RequestStatus::processing);
  EXPECT_EQ(record(1).commandBody, std::nullopt);
}

TEST_F(RequestRecorderTest, MeansTheFirstAlsoAfterTheListWasReplaced) {
  begin(1);
  begin(1);
  recorder.replace(recorder.snapshot());
  complete(1);
  EXPECT_EQ(record(0).status, RequestStatus::delivered);
  EXPECT_EQ(record(1).status, RequestStatus::processing);
}

TEST_F(RequestRecorderTest, StoresTheWholeCommandAndAShortSummary) {
  begin(1);
  const std::string command = std::string(150, 'a') + "\n" + std::string(149, 'b');
  fillIn(1, command, {}, everything);
  EXPECT_EQ(record().commandBody, command);
  EXPECT_EQ(record().commandSummary, command.substr(0, 256));
  EXPECT_EQ(record().outputPreview, std::nullopt);
}

TEST_F(RequestRecorderTest, CountsTheSummaryInCharactersThatPeopleSee) {
  begin(1);
  std::string command;
  for (int index = 0; index < 300; ++index) command += "\u1112\u1161\u11AB";
  fillIn(1, command, {}, everything);
  EXPECT_EQ(characterCount(*record().commandSummary), 256);
  EXPECT_EQ(record().commandSummary->size(), 256u * 9);
}

TEST_F(RequestRecorderTest, StoresAPreviewOfTheConfiguredLength) {
  begin(1);
  auto settings = everything;
  settings.outputPreviewMaxCharacters = 100;
  fillIn(1, {}, std::string(5000, 'x'), settings);
  EXPECT_EQ(record().outputPreview, std::string(100, 'x'));
  EXPECT_EQ(record().commandBody, std::nullopt);
  settings.outputPreviewMaxCharacters = 0;
  fillIn(1, {}, "more", settings);
  EXPECT_EQ(record().outputPreview, "");
}

TEST_F(RequestRecorderTest, StoresOnlyWhatTheSettingsAllowWhetherMaskingIsOnOrOff) {
  for (const bool masking : {true, false}) {
    recorder.replace({});
    begin(1);
    fillIn(1, "ls", "output", {.persistentHistoryEnabled = true, .maskSensitivePatterns = masking});
    EXPECT_EQ(record().commandBody, std::nullopt);
    EXPECT_EQ(record().commandSummary, std::nullopt);
    EXPECT_EQ(record().outputPreview, std::nullopt);
  }
}

TEST_F(RequestRecorderTest, MasksNothing) {
  begin(1);
  auto settings = everything;
  settings.maskSensitivePatterns = true;
  fillIn(1, "export TOKEN=abc123", "password: hunter2", settings);
  EXPECT_EQ(record().commandBody, "export TOKEN=abc123");
  EXPECT_EQ(record().commandSummary, "export TOKEN=abc123");
  EXPECT_EQ(record().outputPreview, "password: hunter2");
}

TEST_F(RequestRecorderTest, PersistsNewestFirstAndKeepsItsOwnListOldestFirst) {
  for (std::uint64_t number = 1; number <= 3; ++number) {
    begin(number);
    time.advance(1);
  }
  recorder.persist(store, everything);
  EXPECT_THAT(inMemory(), ElementsAre(1, 2, 3));
  EXPECT_THAT(onDisk(), ElementsAre(3, 2, 1));
  begin(4);
  recorder.persist(store, everything);
  EXPECT_THAT(inMemory(), ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(onDisk(), ElementsAre(4, 3, 2, 1));
}

TEST_F(RequestRecorderTest, KeepsTheRecordsOfASecondInOrderFromRunToRun) {
  begin(1);
  begin(2);
  time.advance(0.25);
  begin(3);
  for (int run = 0; run < 3; ++run) {
    recorder.persist(store, everything);
    EXPECT_THAT(inMemory(), ElementsAre(1, 2, 3));
    EXPECT_THAT(onDisk(), ElementsAre(3, 2, 1));
    recorder.scrub(store, everything);
    EXPECT_THAT(onDisk(), ElementsAre(3, 2, 1));
    recorder.replace({});
    recorder.prepend(store.load());
    EXPECT_THAT(inMemory(), ElementsAre(1, 2, 3));
  }
}

TEST_F(RequestRecorderTest, AppliesRetentionWhenItPersists) {
  auto settings = everything;
  settings.maximumRecordCount = 2;
  settings.retentionDays = 1;
  begin(1);
  time.advance(3 * 86400);
  for (std::uint64_t number = 2; number <= 4; ++number) {
    begin(number);
    time.advance(1);
  }
  recorder.persist(store, settings);
  EXPECT_THAT(inMemory(), ElementsAre(3, 4));
  EXPECT_THAT(onDisk(), ElementsAre(4, 3));
  complete(4);
  EXPECT_EQ(record(1).status, RequestStatus::delivered);
  complete(1);  // dropped: nothing happens
}

TEST_F(RequestRecorderTest, RetainsInMemoryAlsoWithoutPersistentHistory) {
  begin(1);
  begin(2);
  recorder.persist(store, {.maximumRecordCount = 1});
  EXPECT_THAT(inMemory(), ElementsAre(2));
  EXPECT_FALSE(std::filesystem::exists(store.fileURL()));
}

TEST_F(RequestRecorderTest, PassesOnTheStoresErrorAndStaysRetained) {
  begin(1);
  begin(2);
  files.failOn("create", std::errc::no_space_on_device);
  auto settings = everything;
  settings.maximumRecordCount = 1;
  EXPECT_EQ(testing::structuredError([&] { recorder.persist(store, settings); }),
            storageError(StorageFailure::historyUnsaved));
  EXPECT_THAT(inMemory(), ElementsAre(2));
  EXPECT_EQ(testing::structuredError([&] { recorder.scrub(store, settings); }),
            storageError(StorageFailure::historyUnsaved));
}

TEST_F(RequestRecorderTest, ScrubsWhatIsNoLongerAllowedFromMemoryAndFile) {
  begin(1);
  fillIn(1, "ls", "output", everything);
  begin(2);
  fillIn(2, "pwd", "more", everything);
  recorder.persist(store, everything);
  auto settings = everything;
  settings.storeOutputPreview = false;
  recorder.scrub(store, settings);
  for (const auto& list : {recorder.snapshot(), store.load()}) {
    ASSERT_EQ(list.size(), 2u);
    for (const auto& scrubbed : list) {
      EXPECT_EQ(scrubbed.outputPreview, std::nullopt);
      EXPECT_NE(scrubbed.commandBody, std::nullopt);
      EXPECT_NE(scrubbed.commandSummary, std::nullopt);
    }
  }
  settings.storeCommandBody = false;
  recorder.scrub(store, settings);
  for (const auto& list : {recorder.snapshot(), store.load()}) {
    for (const auto& scrubbed : list) {
      EXPECT_EQ(scrubbed.commandBody, std::nullopt);
      EXPECT_EQ(scrubbed.commandSummary, std::nullopt);
    }
  }
}

TEST_F(RequestRecorderTest, ScrubsWithoutApplyingRetention) {
  begin(1);
  time.advance(400.0 * 86400);
  begin(2);
  auto settings = everything;
  settings.maximumRecordCount = 1;
  recorder.scrub(store, settings);
  EXPECT_THAT(inMemory(), ElementsAre(1, 2));
  EXPECT_THAT(onDisk(), ElementsAre(2, 1));
}

TEST_F(RequestRecorderTest, ReplacesTheWholeList) {
  begin(1);
  recorder.replace({testing::sampleRecord()});
  EXPECT_THAT(recorder.snapshot(), ElementsAre(testing::sampleRecord()));
  complete(1);
  EXPECT_THAT(recorder.snapshot(), ElementsAre(testing::sampleRecord()));
  recorder.replace({});
  EXPECT_THAT(recorder.snapshot(), IsEmpty());
}

TEST_F(RequestRecorderTest, PutsLoadedRecordsBeforeThoseOfThisRun) {
  begin(1);
  time.advance(1);
  begin(2);
  recorder.persist(store, everything);

  RequestRecorder nextRun(time.clock());
  time.advance(60);
  nextRun.begin(numberedUuid(3), {}, ToolName::status, std::nullopt);
  nextRun.prepend(store.load());
  EXPECT_THAT(numbersOf(nextRun.snapshot()), ElementsAre(1, 2, 3));
  nextRun.complete(numberedUuid(3), RequestStatus::delivered, std::nullopt, std::nullopt, std::nullopt);
  EXPECT_EQ(nextRun.snapshot().at(2).status, RequestStatus::delivered);
}

TEST_F(RequestRecorderTest, ClearsMemoryAndFile) {
  begin(1);
  recorder.persist(store, everything);
  recorder.clear(store);
  EXPECT_THAT(recorder.snapshot(), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(store.fileURL()));
}

TEST_F(RequestRecorderTest, EmptiesTheListAlsoWhenTheFileCannotBeDeleted) {
  begin(1);
  recorder.persist(store, everything);
  files.failOn("remove", std::errc::permission_denied);
  EXPECT_EQ(testing::structuredError([&] { recorder.clear(store); }),
            storageError(StorageFailure::historyUndeleted));
  EXPECT_THAT(recorder.snapshot(), IsEmpty());
}

// Holds the store's first write until the test lets it go on.
struct HeldWrite {
  std::promise<void> reached;
  std::promise<void> goOn;

  void hold(testing::HookedFileSystem& files) {
    files.before = [this, held = false](const auto& operation, const auto&) mutable {
      if (operation != "create" || held) return;
      held = true;
      reached.set_value();
      goOn.get_future().wait();
    };
  }
};

TEST_F(RequestRecorderTest, RecordsCallsWhileTheStoreWrites) {
  HeldWrite write;
  write.hold(files);
  begin(1);
  std::thread persisting([this] { recorder.persist(store, everything); });
  write.reached.get_future().wait();
  begin(2);
  complete(1);
  EXPECT_THAT(inMemory(), ElementsAre(1, 2));
  write.goOn.set_value();
  persisting.join();
  EXPECT_THAT(onDisk(), ElementsAre(1));
}

TEST_F(RequestRecorderTest, NeverLetsAnOlderListReplaceANewerOneOnDisk) {
  HeldWrite write;
  write.hold(files);
  begin(1);
  std::thread first([this] { recorder.persist(store, everything); });
  write.reached.get_future().wait();
  begin(2);
  std::thread second([this] { recorder.persist(store, everything); });
  begin(3);
  std::thread third([this] { recorder.scrub(store, everything); });
  write.goOn.set_value();
  first.join();
  second.join();
  third.join();
  EXPECT_THAT(onDisk(), ElementsAre(3, 2, 1));
}

TEST_F(RequestRecorderTest, LeavesNoFileWhenAClearFollowsASaveUnderWay) {
  HeldWrite write;
  write.hold(files);
  begin(1);
  std::thread persisting([this] { recorder.persist(store, everything); });
  write.reached.get_future().wait();
  std::thread clearing([this] { recorder.clear(store); });
  write.goOn.set_value();
  persisting.join();
  clearing.join();
  EXPECT_FALSE(std::filesystem::exists(store.fileURL()));
  EXPECT_THAT(recorder.snapshot(), IsEmpty());
}

TEST_F(RequestRecorderTest, RunsWhatUsesAStoreOneAfterTheOther) {
  HistoryStore other(files, directory / "other" / "history.json");
  const std::vector<std::function<void()>> operations{
      [&] { recorder.persist(other, everything); },
      [&] { recorder.scrub(other, everything); },
      [&] { recorder.clear(other); },
  };
  for (const auto& operation : operations) {
    std::promise<void> reached;
    std::promise<void> goOn;
    std::atomic<bool> firstIsUnderWay{true};
    std::atomic<int> overtakers{0};
    files.before = [&](const auto& name, const auto& path) {
      if (path.native().starts_with((directory / "other").native())) {
        if (firstIsUnderWay) ++overtakers;
      } else if (name == "create") {
        reached.set_value();
        goOn.get_future().wait();
        firstIsUnderWay = false;
      }
    };
    std::thread first([this] { recorder.persist(store, everything); });
    reached.get_future().wait();
    std::thread second(operation);
    for (int chance = 0; chance < 5000; ++chance) std::this_thread::yield();
    goOn.set_value();
    first.join();
    second.join();
    EXPECT_EQ(overtakers, 0);
  }
}

TEST_F(RequestRecorderTest, ItsRevisionGrowsWithEveryChangeAndOnlyThen) {
  std::uint64_t last = recorder.revision();
  const auto expectGrows = [&](const char* operation) {
    EXPECT_GT(recorder.revision(), last) << operation;
    last = recorder.revision();
  };
  begin(1);
  expectGrows("begin");
  fillIn(1, "ls", std::nullopt, everything);
  expectGrows("setSensitiveContent");
  complete(1);
  expectGrows("complete");
  recorder.persist(store, everything);
  expectGrows("persist");
  recorder.scrub(store, {});
  expectGrows("scrub");
  recorder.prepend({});
  expectGrows("prepend");
  recorder.clear(store);
  expectGrows("clear");
  complete(99);
  recorder.snapshot();
  EXPECT_EQ(recorder.revision(), last);
}

TEST_F(RequestRecorderTest, LosesNoCallAmongManyThreads) {
  constexpr std::uint64_t perThread = 60;
  std::vector<std::thread> threads;
  for (std::uint64_t thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this, thread] {
      for (std::uint64_t index = 0; index < perThread; ++index) {
        const auto number = thread * perThread + index + 1;
        begin(number);
        fillIn(number, "ls", "output", everything);
        complete(number);
        if (index % 10 == 0) recorder.persist(store, everything);
        if (index % 25 == 0) recorder.scrub(store, everything);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  recorder.persist(store, everything);
  std::set<std::uint64_t> seen;
  for (const auto& record : recorder.snapshot()) {
    EXPECT_EQ(record.status, RequestStatus::delivered);
    EXPECT_EQ(record.commandBody, "ls");
    seen.insert(record.requestId.bytes[15]);
  }
  EXPECT_EQ(seen.size(), 4 * perThread);
  EXPECT_EQ(store.load().size(), 4 * perThread);
}

}  // namespace
}  // namespace velmora
