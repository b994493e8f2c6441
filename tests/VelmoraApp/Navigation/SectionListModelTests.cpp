#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QAbstractItemModelTester>

#include "VelmoraApp/Navigation/SectionListModel.h"
#include "tests/VelmoraApp/ModelRows.h"

namespace velmora {
namespace {

using testing::cell;
using testing::column;
using ::testing::ElementsAre;

TEST(SectionListModel, HasTheFiveSectionsInTheirOrder) {
  SectionListModel sections;
  const QAbstractItemModelTester tester(&sections, QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_THAT(column(sections, "section"),
              ElementsAre("dashboard", "sessions", "history", "settings", "help"));
  EXPECT_THAT(column(sections, "title"), ElementsAre("Dashboard", "Sessions", "History", "Settings", "Help"));
  EXPECT_THAT(column(sections, "symbol"),
              ElementsAre("gauge", "terminal", "clock.arrow.circlepath", "gearshape", "questionmark.circle"));
}

TEST(SectionListModel, HasNothingBeyondItsRows) {
  const SectionListModel sections;
  EXPECT_FALSE(cell(sections, 5, "title").isValid());
}

}  // namespace
}  // namespace velmora
