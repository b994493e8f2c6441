#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QAbstractItemModelTester>

#include "VelmoraApp/Sessions/SessionListModel.h"
#include "tests/VelmoraApp/ModelRows.h"
#include "tests/support/LocalTimeZone.h"
#include "tests/support/SampleRecords.h"

namespace velmora {
namespace {

using testing::textCell;

Clock clockAt(Date now) {
  return [now] { return now; };
}

TEST(SessionListModel, SaysEverythingOfASession) {
  const LocalTimeZone zone("UTC");
  const auto session = testing::sampleSession();
  SessionListModel model(clockAt(*session.lastRequestAt));
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.showSessions({session});
  EXPECT_EQ(textCell(model, 0, "sessionId"), session.sessionId.toString());
  EXPECT_EQ(textCell(model, 0, "title"), session.title);
  EXPECT_EQ(textCell(model, 0, "tty"), "/dev/ttys003");
  EXPECT_EQ(textCell(model, 0, "busy"), "true");
  EXPECT_EQ(textCell(model, 0, "permission"), "readOnly");
  EXPECT_EQ(textCell(model, 0, "permissionIndex"), "2");
  EXPECT_EQ(textCell(model, 0, "bridgeCreated"), "true");
  EXPECT_EQ(textCell(model, 0, "position"), "Window 1, tab 2");
  EXPECT_EQ(textCell(model, 0, "lastRequest"), session.lastRequestAt->toIso8601().substr(11, 8));
}

TEST(SessionListModel, BelowTheTitleItSaysWhoOpenedTheSessionAndWhenItWasUsed) {
  const LocalTimeZone zone("UTC");
  auto session = testing::sampleSession();
  SessionListModel model(clockAt(*session.lastRequestAt));
  model.showSessions({session});
  EXPECT_EQ(textCell(model, 0, "detail"), "/dev/ttys003  ·  opened by an agent  ·  last used " +
                                              session.lastRequestAt->toIso8601().substr(11, 8) +
                                              "  ·  Window 1, tab 2");
  session.bridgeCreated = false;
  session.lastRequestAt.reset();
  model.showSessions({session});
  EXPECT_EQ(textCell(model, 0, "detail"), "/dev/ttys003  ·  Window 1, tab 2");
}

TEST(SessionListModel, BeingSeenAgainIsNoChange) {
  SessionListModel model(clockAt({}));
  auto session = testing::sampleSession();
  model.showSessions({session});
  int changes = 0;
  QObject::connect(&model, &SessionListModel::dataChanged, &model, [&] { ++changes; });
  session.lastSeenAt.secondsSinceReferenceDate += 60;
  model.showSessions({session});
  EXPECT_EQ(changes, 0);
  model.repeatAll();
  EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace velmora
