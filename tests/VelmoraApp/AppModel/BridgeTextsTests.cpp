#include <gtest/gtest.h>

#include <QtCore/QLocale>

#include "BridgeCore/ErrorCatalogue.h"
#include "ClientSetup/McpClients.h"
#include "VelmoraApp/AppModel/BridgeTexts.h"
#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/AppModel/Translation.h"
#include "tests/support/FakeTime.h"

namespace velmora {
namespace {

class BridgeTextsTest : public ::testing::Test {
 protected:
  ~BridgeTextsTest() override { QLocale::setDefault(QLocale::system()); }
};

std::vector<StructuredError> fixedErrors() {
  const SessionReference session{testing::numberedUuid(1), "title", "/dev/pts/1"};
  return {catalogue::mcpPaused("status", session),
          catalogue::terminalNotRunning("status", session),
          catalogue::statusDeadlineExceeded(),
          catalogue::automationPermissionDenied("status", session),
          catalogue::noSelectedTab(),
          catalogue::sessionNotFound(session.sessionId),
          catalogue::sessionStale(session),
          catalogue::ambiguousTTY(),
          catalogue::sessionNotAllowed("status", session),
          catalogue::undecodableArguments("status", session),
          catalogue::automationFailed("status", session),
          catalogue::outputUnavailable(session),
          catalogue::outputTruncated("status", session),
          catalogue::screenCaptureUnavailable(session),
          catalogue::sessionBusy(catalogue::BusyInput::command, session),
          catalogue::sessionBusy(catalogue::BusyInput::keys, session)};
}

TEST_F(BridgeTextsTest, KnowEverySentenceOfTheErrorsInKorean) {
  const auto korean = Translation::installed(Language::korean);
  for (const auto& error : fixedErrors()) {
    for (const auto& sentence : {error.message, error.recoverySuggestion})
      EXPECT_NE(bridgeText(sentence), text(sentence));
  }
}

TEST_F(BridgeTextsTest, KnowWhatTmuxRefuses) {
  const auto korean = Translation::installed(Language::korean);
  EXPECT_EQ(bridgeText("No tmux server is running."), "실행 중인 tmux 서버가 없습니다.");
  EXPECT_EQ(bridgeText("tmux did not answer in time. The outcome is unknown: the input may have been typed."),
            "tmux가 제때 응답하지 않았습니다. 결과를 알 수 없습니다. 입력이 전달되었을 수 있습니다.");
  EXPECT_EQ(bridgeText("No such tab: x.y. Call again."), "No such tab: x.y. 다시 호출하십시오.");
}

TEST_F(BridgeTextsTest, KnowWhereEachClientIsConfiguredInKorean) {
  const auto korean = Translation::installed(Language::korean);
  for (const auto& client : mcpClients()) {
    if (client.id == "openclaw-cli") continue;  // the window shows its commands with words of its own
    EXPECT_NE(bridgeText(client.place), text(client.place)) << client.id;
  }
}

TEST_F(BridgeTextsTest, AreTheBridgesOwnInEnglishAndWhereTheyAreNotKnown) {
  {
    const auto english = Translation::installed(Language::english);
    for (const auto& error : fixedErrors())
      EXPECT_EQ(problemText(error), text(error.message + " " + error.recoverySuggestion));
  }
  const auto korean = Translation::installed(Language::korean);
  EXPECT_EQ(bridgeText("/home/user/x: no such file"), "/home/user/x: no such file");
}

}  // namespace
}  // namespace velmora
