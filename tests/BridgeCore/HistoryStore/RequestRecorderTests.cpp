#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <random>

#include "BridgeCore/HistoryStore/HistoryQuery.h"
#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeModels/Text.h"
#include "tests/BridgeCore/HistoryStore/RecorderFixture.h"
#include "tests/support/Files.h"
#include "tests/support/SampleRecords.h"
#include "tests/support/Thrown.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using testing::everything;
using ::testing::IsEmpty;
using testing::numberedUuid;

class RequestRecorderTest : public testing::RecorderFixture {
 protected:
  static std::vector<MCPRequestRecord> reversed(const std::vector<MCPRequestRecord>& records) {
    return {records.rbegin(), records.rend()};
  }
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

TEST_F(RequestRecorderTest, HoldsNoMoreThanASettingCanKeepThoughNothingPersists) {
  constexpr std::uint64_t most = 10'000;
  for (std::uint64_t call = 1; call <= most + 2; ++call) begin(call);
  EXPECT_EQ(inMemory().size(), most);
  EXPECT_EQ(inMemory().front(), 3u);
  complete(1);
  complete(3);
  EXPECT_EQ(recorder.snapshot().front().status, RequestStatus::delivered);
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
    recorder.restore(store.load());
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

TEST_F(RequestRecorderTest, AppliesRetentionToAnUnreadableHistoryThatWasKept) {
  const auto unreadable = placeOfUnreadable(store.fileURL());
  testing::writeFile(unreadable, "no history");
  const auto written = [&](double daysAgo) {
    const timespec then{.tv_sec = static_cast<time_t>(time.now().unixSeconds() - daysAgo * 86400),
                        .tv_nsec = 0};
    const timespec times[] = {then, then};
    ASSERT_EQ(::utimensat(AT_FDCWD, unreadable.c_str(), times, 0), 0);
  };
  auto settings = everything;
  settings.retentionDays = 7;
  written(6);
  recorder.persist(store, settings);
  EXPECT_TRUE(files.exists(unreadable));
  written(9);
  recorder.persist(store, settings);
  EXPECT_FALSE(files.exists(unreadable));
}

TEST_F(RequestRecorderTest, RetainsInMemoryAlsoWithoutPersistentHistory) {
  begin(1);
  begin(2);
  recorder.persist(store, {.maximumRecordCount = 1});
  EXPECT_THAT(inMemory(), ElementsAre(2));
  EXPECT_FALSE(std::filesystem::exists(store.fileURL()));
}

TEST_F(RequestRecorderTest, RetainsWhatTheQueryServiceRetainsWhateverTheClockDoes) {
  std::mt19937 random(20261121);
  std::uniform_int_distribution<int> step(-3, 9);
  for (int round = 0; round < 200; ++round) {
    recorder.replace({});
    const PrivacyRetentionSettings settings{.retentionDays = 1 + round % 3,
                                            .maximumRecordCount = 1 + round % 12};
    for (int call = 0; call < 20; ++call) {
      begin(static_cast<std::uint64_t>(std::max(step(random), 0)));  // some ids come again
      time.advance(round % 2 == 0 ? 20000 : 20000.0 * step(random));
    }
    auto expected =
        reversed(HistoryQueryService::retain(reversed(recorder.snapshot()), settings, time.now()));
    recorder.persist(store, settings);
    ASSERT_EQ(recorder.snapshot(), expected) << round;
    for (auto& kept : expected) {
      complete(kept.requestId.bytes[15]);
      const auto after = recorder.snapshot();
      const auto first = std::find_if(after.begin(), after.end(),
                                      [&](const auto& each) { return each.requestId == kept.requestId; });
      ASSERT_EQ(first->status, RequestStatus::delivered) << "the first of its id";
    }
  }
}

TEST_F(RequestRecorderTest, LooksAtNoFileOnceItIsKnownThatNoneIsKept) {
  testing::writeFile(store.fileURL(), "of an earlier run");
  begin(1);
  recorder.persist(store, {});
  EXPECT_FALSE(std::filesystem::exists(store.fileURL()));
  int operations = 0;
  files.before = [&](const auto&, const auto&) { ++operations; };
  begin(2);
  recorder.persist(store, {});
  EXPECT_EQ(operations, 0);
  recorder.persist(store, everything);
  EXPECT_TRUE(std::filesystem::exists(store.fileURL()));
  recorder.persist(store, {});
  EXPECT_FALSE(std::filesystem::exists(store.fileURL())) << "switched on and off again";
  recorder.clear(store);
  operations = 0;
  recorder.persist(store, {});
  EXPECT_EQ(operations, 0) << "clearing has deleted it";
}

TEST_F(RequestRecorderTest, DeletesTheFileLaterWhenItCouldNotBeDeletedAtFirst) {
  testing::writeFile(store.fileURL(), "of an earlier run");
  begin(1);
  files.failOn("remove", std::errc::permission_denied);
  EXPECT_EQ(testing::structuredError([&] { recorder.persist(store, {}); }),
            storageError(StorageFailure::historyUndeleted));
  files.work();
  recorder.persist(store, {});
  EXPECT_FALSE(std::filesystem::exists(store.fileURL()));
}

TEST_F(RequestRecorderTest, KnowsWhetherSomethingIsUnsaved) {
  EXPECT_FALSE(recorder.hasUnsavedChanges());
  begin(1);
  EXPECT_TRUE(recorder.hasUnsavedChanges());
  recorder.persist(store, everything);
  EXPECT_FALSE(recorder.hasUnsavedChanges());
  complete(1);
  EXPECT_TRUE(recorder.hasUnsavedChanges());
  files.failOn("create", std::errc::no_space_on_device);
  testing::structuredError([&] { recorder.persist(store, everything); });
  EXPECT_TRUE(recorder.hasUnsavedChanges()) << "the save failed";
  files.work();
  recorder.scrub(store, everything);
  EXPECT_FALSE(recorder.hasUnsavedChanges());
  begin(2);
  recorder.clear(store);
  EXPECT_FALSE(recorder.hasUnsavedChanges());
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
  nextRun.restore(store.load());
  EXPECT_THAT(numbersOf(nextRun.snapshot()), ElementsAre(1, 2, 3));
  nextRun.complete(numberedUuid(3), RequestStatus::delivered, std::nullopt, std::nullopt, std::nullopt);
  EXPECT_EQ(nextRun.snapshot().at(2).status, RequestStatus::delivered);
}

TEST_F(RequestRecorderTest, CancelsWhatAnEarlierRunNeverCompleted) {
  begin(1);
  begin(2);
  complete(2);
  recorder.persist(store, everything);
  RequestRecorder nextRun(time.clock());
  nextRun.begin(numberedUuid(3), {}, ToolName::status, std::nullopt);
  nextRun.restore(store.load());
  const auto records = nextRun.snapshot();
  ASSERT_THAT(numbersOf(records), ElementsAre(1, 2, 3));
  EXPECT_EQ(records[0].status, RequestStatus::cancelled);
  EXPECT_EQ(records[0].completedAt, std::nullopt);
  EXPECT_EQ(records[1].status, RequestStatus::delivered);
  EXPECT_EQ(records[2].status, RequestStatus::processing) << "this one is under way";
}

TEST_F(RequestRecorderTest, WhatWasRestoredUnchangedIsSaved) {
  begin(1);
  recorder.persist(store, everything);
  RequestRecorder cancelling(time.clock());
  cancelling.restore(store.load());
  EXPECT_TRUE(cancelling.hasUnsavedChanges());
  complete(1);
  recorder.persist(store, everything);
  RequestRecorder unchanged(time.clock());
  unchanged.restore(store.load());
  EXPECT_FALSE(unchanged.hasUnsavedChanges());
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
  EXPECT_EQ(recorder.revision(), last) << "nothing was dropped";
  begin(2);
  expectGrows("begin");
  auto one = everything;
  one.maximumRecordCount = 1;
  recorder.persist(store, one);
  expectGrows("persist");
  recorder.scrub(store, {});
  expectGrows("scrub");
  recorder.restore({});
  expectGrows("restore");
  recorder.clear(store);
  expectGrows("clear");
  complete(99);
  recorder.snapshot();
  EXPECT_EQ(recorder.revision(), last);
}

}  // namespace
}  // namespace velmora
