#include "VelmoraApp/RecentRequests/SessionTitles.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/support/SampleRecords.h"

namespace velmora {
namespace {

class SessionTitlesTest : public testing::AppFixture {
 protected:
  static MCPRequestRecord of(const Uuid& sessionId) {
    return {.sessionSnapshot = SessionReference{.sessionId = sessionId}};
  }
};

TEST_F(SessionTitlesTest, NamesWhatIsKnownAndNothingElse) {
  startApp();
  const SessionTitles names(*app);
  const auto& session = app->sessions().at(1);
  EXPECT_EQ(sessionText(names.named(of(session.sessionId))), "title of /dev/ttys002 (/dev/ttys002)");
  const auto unknown = testing::numberedUuid(77);
  EXPECT_EQ(sessionText(names.named(of(unknown))).toStdString(), unknown.toString());
  EXPECT_EQ(sessionText(names.named({})), "");
}

TEST_F(SessionTitlesTest, ANameThatIsRecordedStays) {
  startApp();
  const SessionTitles names(*app);
  auto record = of(app->sessions().at(0).sessionId);
  record.sessionSnapshot->title = "as it was";
  EXPECT_EQ(names.named(record), record);
}

TEST_F(SessionTitlesTest, FollowsATitleAndKeepsTheLastOne) {
  startApp();
  SessionTitles names(*app);
  const auto changes = testing::countOf(names, &SessionTitles::changed);
  const auto id = app->sessions().at(0).sessionId;
  terminal->tabs[0].title = "another";
  andRefresh([this] { app->refreshAll(); });
  EXPECT_EQ(sessionText(names.named(of(id))), "another (/dev/ttys001)");
  EXPECT_EQ(*changes, 1);
  terminal->tabs.erase(terminal->tabs.begin());
  andRefresh([this] { app->refreshAll(); });
  EXPECT_EQ(sessionText(names.named(of(id))), "another (/dev/ttys001)");
  EXPECT_EQ(*changes, 1);
}

}  // namespace
}  // namespace velmora
