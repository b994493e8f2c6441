#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QAbstractItemModelTester>

#include "VelmoraApp/RecentRequests/RecordListModel.h"
#include "VelmoraApp/Style/Meaning.h"
#include "tests/VelmoraApp/ModelRows.h"
#include "tests/support/FakeTime.h"
#include "tests/support/LocalTimeZone.h"
#include "tests/support/SampleRecords.h"

namespace velmora {
namespace {

using testing::column;
using ::testing::ElementsAre;
using testing::numberedUuid;
using testing::textCell;

class RecordListModelTest : public ::testing::Test {
 protected:
  static MCPRequestRecord record(std::uint64_t number, RequestStatus status = RequestStatus::delivered) {
    return {.requestId = numberedUuid(number),
            .receivedAt = {static_cast<double>(number)},
            .client = {"a client", "1.0"},
            .toolName = ToolName::sendCommand,
            .status = status};
  }
  void show(std::vector<MCPRequestRecord> records) { model.showRecords(std::move(records)); }

  const LocalTimeZone zone{"UTC"};
  testing::FakeTime time{100};
  RecordListModel model{time.clock()};
  QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(RecordListModelTest, SaysEverythingOfARequest) {
  auto full = record(1);
  full.completedAt = Date{3};
  full.commandSummary = "ls -la";
  full.outputPreview = "total 0";
  full.durationMilliseconds = 12;
  full.sessionSnapshot = testing::sampleReference();
  full.error = testing::sampleError();
  show({full});
  EXPECT_EQ(textCell(model, 0, "requestId"), numberedUuid(1).toString());
  EXPECT_EQ(textCell(model, 0, "toolName"), "terminal_send_command");
  EXPECT_EQ(textCell(model, 0, "status"), "delivered");
  EXPECT_EQ(textCell(model, 0, "statusText"), "It reached the terminal. What came of it is not tracked.");
  EXPECT_EQ(testing::cell(model, 0, "meaning").value<Meaning>(), Meaning::Quiet);
  EXPECT_EQ(textCell(model, 0, "target"), "build — 한국어 👩‍👩‍👧 (/dev/ttys003)");
  EXPECT_EQ(textCell(model, 0, "received"), "Received 00:00:01");
  EXPECT_EQ(textCell(model, 0, "completed"), "Completed 00:00:03");
  EXPECT_EQ(textCell(model, 0, "command"), "ls -la");
  EXPECT_EQ(textCell(model, 0, "output"), "total 0");
  EXPECT_EQ(textCell(model, 0, "note"), "Delivered to Terminal; execution result is not tracked.");
  EXPECT_EQ(textCell(model, 0, "error"), "The Terminal session is busy.");
  EXPECT_EQ(textCell(model, 0, "client"), "a client 1.0");
  EXPECT_EQ(textCell(model, 0, "duration"), "12 ms");
}

TEST_F(RecordListModelTest, LeavesEmptyWhatARequestDoesNotHave) {
  auto bare = record(1, RequestStatus::processing);
  bare.client.version.reset();
  show({bare});
  EXPECT_EQ(textCell(model, 0, "target"), "No target");
  EXPECT_EQ(textCell(model, 0, "client"), "a client");
  for (const auto* role : {"completed", "command", "output", "note", "error", "duration"}) {
    EXPECT_EQ(textCell(model, 0, role), "") << role;
  }
}

TEST_F(RecordListModelTest, OnlyADeliveredCommandCarriesTheNote) {
  auto key = record(1);
  key.toolName = ToolName::sendKey;
  show({key, record(2, RequestStatus::rejected), record(3)});
  EXPECT_THAT(column(model, "note"),
              ElementsAre("Delivered to Terminal; execution result is not tracked.", "", ""));
}

TEST_F(RecordListModelTest, SaysThatTheTextOfACommandWasNotKept) {
  auto kept = record(2);
  kept.commandSummary = "ls";
  auto key = record(3);
  key.toolName = ToolName::sendKey;
  show({record(1), kept, key, record(4, RequestStatus::rejected)});
  EXPECT_THAT(column(model, "commandGap"), ElementsAre("", "", "", "The text of this command was not kept."));
}

TEST_F(RecordListModelTest, ShowsTheNewestFirst) {
  show({record(1), record(2), record(3)});
  EXPECT_THAT(column(model, "received"),
              ElementsAre("Received 00:00:03", "Received 00:00:02", "Received 00:00:01"));
}

TEST_F(RecordListModelTest, ANewRequestIsOneRowMoreAndAFinishedOneARowThatChanges) {
  show({record(1), record(2, RequestStatus::processing)});
  std::vector<std::string> changes;
  QObject::connect(&model, &RecordListModel::rowsInserted, &model, [&](const auto&, int first, int last) {
    changes.push_back("+" + std::to_string(first) + std::to_string(last));
  });
  QObject::connect(&model, &RecordListModel::dataChanged, &model,
                   [&](const QModelIndex& first) { changes.push_back("~" + std::to_string(first.row())); });
  const QPersistentModelIndex oldest = model.index(1, 0);
  show({record(1), record(2), record(3)});
  EXPECT_THAT(changes, ElementsAre("+00", "~1"));
  EXPECT_EQ(oldest.row(), 2);
}

TEST_F(RecordListModelTest, TwoRequestsWithOneIdAreTwoRows) {
  auto twin = record(1);
  twin.receivedAt = {5};
  show({record(1), twin});
  EXPECT_THAT(column(model, "received"), ElementsAre("Received 00:00:05", "Received 00:00:01"));
  show({record(1), twin, record(2)});
  EXPECT_EQ(model.rowCount(), 3);
}

}  // namespace
}  // namespace velmora
