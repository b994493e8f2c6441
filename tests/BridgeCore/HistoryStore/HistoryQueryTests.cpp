#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BridgeCore/HistoryStore/HistoryQuery.h"
#include "tests/support/FakeTime.h"
#include "tests/support/LocalTimeZone.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::numberedUuid;

MCPRequestRecord recordOf(std::uint64_t number, ToolName tool = ToolName::status) {
  return {.requestId = numberedUuid(number), .receivedAt = {}, .client = {"an agent", {}}, .toolName = tool};
}

std::vector<std::uint64_t> numbersOf(const std::vector<MCPRequestRecord>& records) {
  std::vector<std::uint64_t> numbers;
  for (const auto& record : records) numbers.push_back(record.requestId.bytes[15]);
  return numbers;
}

std::vector<std::uint64_t> filtered(const std::vector<MCPRequestRecord>& records,
                                    const HistoryFilter& filter) {
  return numbersOf(HistoryQueryService::filter(records, filter));
}

class HistoryFilterTest : public ::testing::Test {
 protected:
  HistoryFilterTest() {
    records[1].sessionSnapshot = SessionReference{*session, "Build Folder", "/dev/ttys007"};
    records[1].status = RequestStatus::delivered;
    records[1].commandBody = "ls -la secretbody";
    records[1].commandSummary = "ls -la";
    records[2].sessionSnapshot = SessionReference{numberedUuid(99), {}, {}};
    records[2].outputPreview = "secretpreview";
    records[2].status = RequestStatus::failed;
    records[2].error = StructuredError{.code = ErrorCode::sessionBusy};
    records[2].client.name = "Caf\u00C9 Client";
  }

  bool finds(const std::string& query) { return !filtered(records, {.query = query}).empty(); }

  std::optional<Uuid> session = Uuid::parse("ABCDEF01-2345-4789-8ABC-DEF012345678");
  std::vector<MCPRequestRecord> records{recordOf(1), recordOf(2, ToolName::sendCommand),
                                        recordOf(3, ToolName::readOutput)};
};

TEST_F(HistoryFilterTest, MatchesEverythingWhenEmpty) {
  EXPECT_EQ(HistoryQueryService::filter(records, {}), records);
  EXPECT_THAT(HistoryQueryService::filter({}, {}), IsEmpty());
}

TEST_F(HistoryFilterTest, KeepsOneTool) {
  EXPECT_THAT(filtered(records, {.tool = ToolName::readOutput}), ElementsAre(3));
  EXPECT_THAT(filtered(records, {.tool = ToolName::focusSession}), IsEmpty());
}

TEST_F(HistoryFilterTest, KeepsOneSessionAndNoRecordWithoutSession) {
  EXPECT_THAT(filtered(records, {.sessionId = session}), ElementsAre(2));
  EXPECT_THAT(filtered(records, {.sessionId = numberedUuid(5)}), IsEmpty());
}

TEST_F(HistoryFilterTest, KeepsClientsWhoseNameContainsTheText) {
  EXPECT_THAT(filtered(records, {.clientName = "AGENT"}), ElementsAre(1, 2));
  EXPECT_THAT(filtered(records, {.clientName = "caf\u00E9"}), ElementsAre(3));
  EXPECT_THAT(filtered(records, {.clientName = ""}), ElementsAre(1, 2, 3));
  EXPECT_THAT(filtered(records, {.clientName = "nobody"}), IsEmpty());
}

TEST_F(HistoryFilterTest, KeepsTheStatusesOfTheSet) {
  EXPECT_THAT(filtered(records, {.statuses = {RequestStatus::delivered, RequestStatus::failed}}),
              ElementsAre(2, 3));
  EXPECT_THAT(filtered(records, {.statuses = {RequestStatus::cancelled}}), IsEmpty());
}

TEST_F(HistoryFilterTest, KeepsFailuresOfOneCode) {
  EXPECT_THAT(filtered(records, {.errorCode = ErrorCode::sessionBusy}), ElementsAre(3));
  EXPECT_THAT(filtered(records, {.errorCode = ErrorCode::mcpPaused}), IsEmpty());
}

TEST_F(HistoryFilterTest, AsksForAllOfItsParts) {
  HistoryFilter filter{
      .query = "LS", .tool = ToolName::sendCommand, .sessionId = session, .clientName = "agent"};
  EXPECT_THAT(filtered(records, filter), ElementsAre(2));
  filter.statuses = {RequestStatus::failed};
  EXPECT_THAT(filtered(records, filter), IsEmpty());
}

TEST_F(HistoryFilterTest, SearchesWhatIsShownOfARecord) {
  EXPECT_THAT(filtered(records, {.query = "LS -LA"}), ElementsAre(2));
  EXPECT_THAT(filtered(records, {.query = "LS"}), ElementsAre(2));
  EXPECT_THAT(filtered(records, {.query = "terminal_STATUS"}), ElementsAre(1));
  EXPECT_THAT(filtered(records, {.query = "build f"}), ElementsAre(2));
  EXPECT_THAT(filtered(records, {.query = "abcdef01-2345"}), ElementsAre(2));
  EXPECT_THAT(filtered(records, {.query = "ABCDEF01-2345"}), ElementsAre(2));
  EXPECT_THAT(filtered(records, {.query = "TTYS007"}), ElementsAre(2));
  EXPECT_THAT(filtered(records, {.query = "session_busy"}), ElementsAre(3));
  EXPECT_THAT(filtered(records, {.query = "CAF\u00C9"}), ElementsAre(3));
}

TEST_F(HistoryFilterTest, NeverSearchesCommandBodiesAndPreviews) {
  EXPECT_FALSE(finds("secretbody"));
  EXPECT_FALSE(finds("secretpreview"));
}

TEST_F(HistoryFilterTest, DoesNotTrimTheQuery) {
  EXPECT_FALSE(finds("ls -la "));
  EXPECT_TRUE(finds(" "));
  EXPECT_FALSE(finds("   "));
}

Date at(const char* text) { return Date::parseIso8601(text).value(); }

MCPRequestRecord received(std::uint64_t number, Date date) {
  auto record = recordOf(number);
  record.receivedAt = date;
  return record;
}

std::vector<std::uint64_t> retained(const std::vector<MCPRequestRecord>& records, std::int64_t days, Date now,
                                    std::int64_t most = 10000) {
  return numbersOf(
      HistoryQueryService::retain(records, {.retentionDays = days, .maximumRecordCount = most}, now));
}

TEST(HistoryRetention, KeepsRecordsOfExactlyThoseDays) {
  const LocalTimeZone zone("Asia/Seoul");
  const auto now = at("2026-11-21T12:00:00Z");
  const auto cutoff = at("2026-11-14T12:00:00Z");
  const Date justBefore{cutoff.secondsSinceReferenceDate - 0.001};
  EXPECT_THAT(retained({received(1, at("2026-11-13T12:00:00Z")), received(2, justBefore), received(3, cutoff),
                        received(4, now)},
                       7, now),
              ElementsAre(4, 3));
}

TEST(HistoryRetention, CountsDaysOfTheCalendarWhenClocksGoForward) {
  const LocalTimeZone zone("America/New_York");
  const auto now = at("2026-03-09T12:00:00-04:00");
  // 47 hours ago by the clock on the wall it is two days.
  EXPECT_THAT(
      retained({received(1, at("2026-03-07T11:59:59-05:00")), received(2, at("2026-03-07T12:00:00-05:00"))},
               2, now),
      ElementsAre(2));
}

TEST(HistoryRetention, CountsDaysOfTheCalendarWhenClocksGoBack) {
  const LocalTimeZone zone("America/New_York");
  const auto now = at("2026-11-02T12:00:00-05:00");
  EXPECT_THAT(
      retained({received(1, at("2026-10-31T11:59:59-04:00")), received(2, at("2026-10-31T12:00:00-04:00"))},
               2, now),
      ElementsAre(2));
}

TEST(HistoryRetention, DropsNothingByAgeWhenThereIsNoSuchDay) {
  EXPECT_THAT(retained({received(1, at("0001-01-01T00:00:00Z"))}, 4'000'000'000, at("2026-11-21T12:00:00Z")),
              ElementsAre(1));
}

TEST(HistoryRetention, KeepsTheNewestOfTooMany) {
  const auto now = at("2026-11-21T12:00:00Z");
  std::vector<MCPRequestRecord> records;
  for (const std::uint64_t number : {3u, 1u, 5u, 2u, 4u}) {
    records.push_back(
        received(number, Date{now.secondsSinceReferenceDate + static_cast<double>(number) - 10}));
  }
  EXPECT_THAT(retained(records, 7, now, 3), ElementsAre(5, 4, 3));
  EXPECT_THAT(retained(records, 7, now, 5), ElementsAre(5, 4, 3, 2, 1));
  EXPECT_THAT(retained({}, 7, now), IsEmpty());
}

TEST(HistoryRetention, KeepsRecordsOfTheSameTimeInTheirOrder) {
  const auto now = at("2026-11-21T12:00:00Z");
  EXPECT_THAT(retained({received(2, now), received(1, now), received(3, now)}, 1, now), ElementsAre(2, 1, 3));
}

TEST(HistoryRetention, DoesNotAskWhetherHistoryIsKept) {
  const auto now = at("2026-11-21T12:00:00Z");
  const std::vector<MCPRequestRecord> records{received(1, now)};
  EXPECT_EQ(HistoryQueryService::retain(records, {.persistentHistoryEnabled = false}, now), records);
  EXPECT_EQ(HistoryQueryService::retain(records, {.persistentHistoryEnabled = true}, now), records);
}

TEST(HistoryDeletion, DropsEveryRecordOfTheRequestAndKeepsTheOrder) {
  const std::vector<MCPRequestRecord> records{recordOf(3), recordOf(1), recordOf(2), recordOf(1)};
  EXPECT_THAT(numbersOf(HistoryQueryService::delete_(numberedUuid(1), records)), ElementsAre(3, 2));
  EXPECT_EQ(HistoryQueryService::delete_(numberedUuid(9), records), records);
}

}  // namespace
}  // namespace velmora
