#include "VelmoraApp/RecentRequests/RecentRequestsViewModel.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/VelmoraApp/ModelRows.h"

namespace velmora {
namespace {

using testing::column;

class RecentRequestsViewModelTest : public testing::AppFixture {};

TEST_F(RecentRequestsViewModelTest, ShowsTheNewestFewAndFollows) {
  startApp();
  const SessionTitles names(*app);
  RecentRequestsViewModel recent(*app, names);
  EXPECT_EQ(recent.count(), 0) << "the screens' own are left out";
  const auto changes = testing::countOf(recent, &RecentRequestsViewModel::countChanged);
  for (int count = 0; count < 6; ++count) EXPECT_TRUE(sendCommand("ls").ok);
  pollRecords();
  EXPECT_EQ(recent.count(), 5);
  EXPECT_GE(*changes, 1);
  EXPECT_THAT(column(*recent.records(), "toolName"), ::testing::Each("terminal_send_command"));
  EXPECT_THAT(column(*recent.records(), "target"), ::testing::Each("title of /dev/ttys001 (/dev/ttys001)"));
}

}  // namespace
}  // namespace velmora
