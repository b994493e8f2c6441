#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "VelmoraApp/Dashboard/ClientListModel.h"
#include "tests/VelmoraApp/ModelRows.h"
#include "tests/support/FakeTime.h"
#include "tests/support/LocalTimeZone.h"

namespace velmora {
namespace {

using testing::column;
using ::testing::ElementsAre;

class ClientListModelTest : public ::testing::Test {
 protected:
  const LocalTimeZone zone{"UTC"};
  testing::FakeTime time{100};
  ClientListModel model{time.clock()};
};

TEST_F(ClientListModelTest, SaysWhatEachClientDidAndWhen) {
  model.showClients({{{"agent", "1.0"}, {1}, {63}, 12, false}, {{"", {}}, {2}, {2}, 1, true}});
  EXPECT_THAT(column(model, "name"), ElementsAre("agent 1.0", "An agent"));
  EXPECT_THAT(column(model, "activity"),
              ElementsAre("12 requests in the last 10 minutes, the last at 00:01:03",
                          "1 request in the last 10 minutes, one is under way"));
}

TEST_F(ClientListModelTest, NoClientCanPassForAnother) {
  model.showClients(
      {{{"a", "bc"}, {}, {}, 1, false}, {{"ab", "c"}, {}, {}, 1, false}, {{"abc", {}}, {}, {}, 1, false}});
  EXPECT_EQ(model.rowCount(), 3);
  model.showClients({{{"ab", "c"}, {}, {}, 2, false}});
  EXPECT_THAT(column(model, "name"), ElementsAre("ab c"));
}

}  // namespace
}  // namespace velmora
