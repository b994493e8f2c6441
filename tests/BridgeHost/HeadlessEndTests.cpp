// What becomes of calls that are under way when their client leaves or the bridge is asked to end.
#include <gmock/gmock.h>

#include <csignal>
#include <thread>

#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketClient.h"
#include "tests/BridgeHost/HeadlessFixture.h"

namespace velmora {
namespace {

using testing::eventually;
using ::testing::HasSubstr;
using ::testing::Not;

class HeadlessEnd : public testing::HeadlessFixture {
 protected:
  ~HeadlessEnd() override { resumeTmux(); }

  void stopTmux() {
    server = static_cast<pid_t>(std::stol(tmux({"display-message", "-p", "#{pid}"})));
    ::kill(server, SIGSTOP);
  }
  void resumeTmux() {
    if (server != 0) ::kill(server, SIGCONT);
  }
  static std::string idOf(const LocalControlResponse& created) {
    return textAt(at(created.data.value(), "session"), "sessionId");
  }
  std::size_t connections() const {
    return testing::namesIn("/proc/" + std::to_string(headless->process()) + "/fd").size();
  }

  pid_t server = 0;
};

TEST_F(HeadlessEnd, TypesNothingForAClientThatHasLeft) {
  startTmux();
  startHeadless();
  LocalControlClient steady(socketPath());  // its connection stays, so that none goes while they are counted
  const auto id = idOf(call(steady, ToolName::createSession));
  stopTmux();
  const auto idle = connections();
  {
    auto client = UnixSocketClient::connect(socketPath());
    client.writeFrame(LocalControlCodec::frame(
        LocalControlRequest{.requestId = Uuid::random(),
                            .client = {"tester", std::nullopt, 1},
                            .operation = ToolName::sendCommand,
                            .arguments = {{"sessionId", id}, {"command", "echo abandoned"}}}));
    // The connection, and one more for the question to tmux that is under way then.
    EXPECT_TRUE(eventually([&] { return connections() >= idle + 2; }));
  }
  resumeTmux();
  payload(ToolName::sendCommand, {{"sessionId", id}, {"command", "echo wanted"}});
  expectInHistory(id, "\nwanted");
  EXPECT_THAT(historyOf(id), Not(HasSubstr("abandoned")));
}

TEST_F(HeadlessEnd, AnswersAndRecordsWhatIsUnderWayWhenItIsAskedToEnd) {
  std::signal(SIGHUP, SIG_DFL);  // whoever runs the tests may ignore it, and programs inherit that
  for (const int number : {SIGTERM, SIGHUP}) {
    writeSettings({.persistentHistoryEnabled = true, .storeCommandBody = true, .deleteOnAppExit = false});
    if (number == SIGTERM) startTmux();
    startHeadless();
    LocalControlClient steady(
        socketPath());  // its connection stays, so that none goes while they are counted
    const auto id = idOf(call(steady, ToolName::createSession));
    stopTmux();
    const auto idle = connections();
    std::optional<LocalControlResponse> response;
    std::thread client([&] {
      try {
        response = call(ToolName::sendCommand, {{"sessionId", id}, {"command", "echo late"}});
      } catch (const UnixSocketError&) {  // it went without an answer
      }
    });
    EXPECT_TRUE(eventually([&] { return connections() >= idle + 2; }));
    headless->signal(number);
    EXPECT_EQ(headless->wait(), 0);
    headless.reset();
    client.join();
    resumeTmux();
    ASSERT_TRUE(response.has_value()) << "signal " << number;
    EXPECT_FALSE(response->ok);
    const auto history = testing::contentOf(historyFile());
    EXPECT_THAT(history, HasSubstr(response->requestId.toString()));
    EXPECT_THAT(history, Not(HasSubstr("processing")));
    EXPECT_FALSE(std::filesystem::exists(socketPath()));
  }
}

TEST_F(HeadlessEnd, GoesOnWhenAHangUpIsIgnoredAsNohupDoes) {
  const auto before = std::signal(SIGHUP, SIG_IGN);
  startHeadless();
  std::signal(SIGHUP, before);
  headless->signal(SIGHUP);
  for (int round = 0; round < 3; ++round) EXPECT_TRUE(call(ToolName::status).ok);
}

}  // namespace
}  // namespace velmora
