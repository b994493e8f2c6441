#include <gtest/gtest.h>

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/RecentRequests/RequestTexts.h"

namespace velmora {
namespace {

MCPRequestRecord request(ToolName tool, RequestStatus status) {
  return {
      .client = {"agent", "1.0"}, .toolName = tool, .sessionSnapshot = {{{}, "100%1", {}}}, .status = status};
}

TEST(RequestTextsTest, EveryToolIsADeedThatWasUnderWayDoneOrTried) {
  for (const auto& entry : enumCases<ToolName>) {
    const auto now = deedText(request(entry.value, RequestStatus::processing));
    const auto done = deedText(request(entry.value, RequestStatus::delivered));
    const auto tried = deedText(request(entry.value, RequestStatus::rejected));
    EXPECT_TRUE(now.startsWith("agent is ")) << now.toStdString();
    EXPECT_TRUE(tried.startsWith("agent tried to ")) << tried.toStdString();
    EXPECT_NE(done, now);
    EXPECT_FALSE(now.contains(text(entry.wireName)));
  }
}

TEST(RequestTextsTest, ATitleIsTakenAsItIs) {
  EXPECT_EQ(deedText(request(ToolName::readOutput, RequestStatus::readComplete)), "agent read 100%1");
}

TEST(RequestTextsTest, AClientWithoutANameIsAnAgent) {
  EXPECT_EQ(clientText({"", "1.0"}), "An agent");
  EXPECT_EQ(clientText({"agent", {}}), "agent");
  EXPECT_EQ(clientText({"agent", "1.0"}), "agent 1.0");
}

TEST(RequestTextsTest, ALongNameLeavesTheDeedInSight) {
  auto record = request(ToolName::readOutput, RequestStatus::readComplete);
  record.client.name = std::string(100, 'x');
  EXPECT_EQ(deedText(record), QString(39, 'x') + "… read 100%1");
  record.client.name = "x";
  for (int count = 0; count < 50; ++count) record.client.name += "👩";
  EXPECT_EQ(deedText(record).toStdString().find("\xEF\xBF\xBD"), std::string::npos);
}

TEST(RequestTextsTest, EveryStatusSaysWhatItMeans) {
  for (const auto& entry : enumCases<RequestStatus>) {
    EXPECT_TRUE(statusText(entry.value).endsWith('.')) << entry.wireName;
    EXPECT_FALSE(statusText(entry.value).contains(text(entry.wireName)));
  }
}

TEST(RequestTextsTest, OnlyWhatWentWrongIsMoreThanQuiet) {
  const std::pair<RequestStatus, Meaning> cases[] = {
      {RequestStatus::received, Meaning::Quiet},   {RequestStatus::processing, Meaning::Quiet},
      {RequestStatus::delivered, Meaning::Quiet},  {RequestStatus::readComplete, Meaning::Quiet},
      {RequestStatus::rejected, Meaning::Caution}, {RequestStatus::cancelled, Meaning::Caution},
      {RequestStatus::failed, Meaning::Danger}};
  for (const auto& [status, meaning] : cases) EXPECT_EQ(statusMeaning(status), meaning) << wireName(status);
}

}  // namespace
}  // namespace velmora
