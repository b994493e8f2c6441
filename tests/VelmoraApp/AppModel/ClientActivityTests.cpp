#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "VelmoraApp/AppModel/ClientActivity.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Date kNow{10000};

MCPRequestRecord request(double secondsAgo, const ClientIdentitySummary& client,
                         ToolName tool = ToolName::sendCommand,
                         RequestStatus status = RequestStatus::delivered) {
  return {.receivedAt = {kNow.secondsSinceReferenceDate - secondsAgo},
          .client = client,
          .toolName = tool,
          .status = status};
}

const ClientIdentitySummary kAgent{"agent", "1.0"};

TEST(ClientActivityTest, CountsWhatEachClientAskedWithinTenMinutes) {
  const auto active = clientActivity(
      {request(601, kAgent), request(600, kAgent), request(300, {"other", {}}), request(5, kAgent)}, kNow);
  EXPECT_THAT(active, ElementsAre(ClientActivity{kAgent, {9400}, {9995}, 2, false},
                                  ClientActivity{{"other", {}}, {9700}, {9700}, 1, false}));
}

TEST(ClientActivityTest, TwoVersionsAreTwoClients) {
  EXPECT_EQ(clientActivity({request(2, kAgent), request(1, {"agent", "1.1"})}, kNow).size(), 2u);
  EXPECT_EQ(clientActivity({request(2, kAgent), request(1, {"agent", {}})}, kNow).size(), 2u);
}

TEST(ClientActivityTest, SaysWhoIsCalling) {
  const auto running = request(3, kAgent, ToolName::readOutput, RequestStatus::processing);
  const auto active = clientActivity({running, request(1, kAgent)}, kNow);
  ASSERT_EQ(active.size(), 1u);
  EXPECT_TRUE(active[0].isCalling);
  EXPECT_EQ(active[0].lastCallAt, Date{9999});
}

TEST(ClientActivityTest, TheScreensAreNoClient) {
  EXPECT_THAT(clientActivity(
                  {request(3, ownClient(), ToolName::status), request(2, ownClient(), ToolName::listSessions),
                   request(1, ownClient(), ToolName::focusSession)},
                  kNow),
              IsEmpty());
}

TEST(ClientActivityTest, AnAgentThatTakesTheScreensNameHidesNoDeed) {
  for (const auto tool : {ToolName::createSession, ToolName::sendCommand, ToolName::sendKey,
                          ToolName::readOutput, ToolName::captureScreen}) {
    EXPECT_FALSE(isOwnRequest(request(1, ownClient(), tool))) << wireName(tool);
  }
  EXPECT_FALSE(isOwnRequest(request(1, {"Velmora.app", "1.0"}, ToolName::status)));
}

TEST(ClientActivityTest, TheStatusNamesThem) {
  const auto connected = connectedClients({request(20, kAgent), request(10, kAgent)}, kNow);
  ASSERT_EQ(connected.size(), 1u);
  EXPECT_EQ(connected[0].name, "agent");
  EXPECT_EQ(connected[0].version, "1.0");
  EXPECT_EQ(connected[0].connectedAt, Date{9980});
  EXPECT_EQ(connected[0].lastSeenAt, Date{9990});
}

}  // namespace
}  // namespace velmora
