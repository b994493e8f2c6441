// Whether clients reach the application, over real sockets and beside the real program.
#include <QtCore/QLocale>
#include <cstdlib>

#include "LocalControl/LocalControlClient.h"
#include "VelmoraApp/AppModel/Serving.h"
#include "VelmoraApp/AppModel/Translation.h"
#include "tests/LocalControl/OtherUser.h"
#include "tests/VelmoraApp/AppFixture.h"
#include "tests/support/ChildProgram.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::spinUntil;

class ServingTest : public testing::AppFixture {
 protected:
  std::filesystem::path socketURL() const { return directory / "app.velmora.Velmora/control-v1.sock"; }

  /// velmora-headless at the place of the application's own socket.
  std::unique_ptr<testing::ChildProgram> startHeadless() {
    auto environment = options.bridge.environment;
    environment["PATH"] = std::getenv("PATH");
    environment["TMUX_TMPDIR"] = directory.path().string();
    auto headless = std::make_unique<testing::ChildProgram>(
        std::vector<std::string>{VELMORA_BIN "/velmora-headless"}, environment);
    EXPECT_EQ(headless->readLine(), socketURL().string());
    return headless;
  }

  LocalControlResponse listOverTheSocket() {
    LocalControlClient client(socketURL());
    return client.send({.requestId = testing::numberedUuid(900),
                        .client = {"test", std::nullopt, 1},
                        .operation = ToolName::listSessions});
  }

  /// Accepting ends by itself.
  void runOutOfDescriptors() {
    const FileDescriptor late = SocketPlatform::openStreamSocket();
    const auto address = UnixSocketEndpoint::address(socketURL());
    const NoMoreDescriptors limit;
    ASSERT_EQ(
        ::connect(late.get(), reinterpret_cast<const sockaddr*>(&address), UnixSocketEndpoint::addressLength),
        0);
    ASSERT_TRUE(spinUntil([this] { return !app->serving().problem().isEmpty(); }));
  }

  void andWaitForTheWork(const std::function<void()>& action) {
    action();
    EXPECT_TRUE(app->serving().isUnderWay());
    ASSERT_TRUE(spinUntil([this] { return !app->serving().isUnderWay(); }));
  }
};

TEST_F(ServingTest, HasNothingToSayWhileClientsConnect) {
  startApp();
  EXPECT_FALSE(app->serving().otherBridge());
  EXPECT_EQ(app->serving().problem(), "");
}

TEST_F(ServingTest, AnotherBridgeKeepsTheTerminalTheFilesAndItsPause) {
  writeSettings({.persistentHistoryEnabled = true, .deleteOnAppExit = true});
  testing::writeFile(historyFile(), R"({"schemaVersion":1,"records":[]})");
  const auto headless = startHeadless();
  app = std::make_unique<AppModel>(options);
  ASSERT_TRUE(app->serving().otherBridge());
  EXPECT_EQ(app->serving().otherBridge()->process, headless->process());
  EXPECT_EQ(app->serving().otherBridge()->about.name, "velmora-headless");
  app->setPaused(true);
  app->poll();
  EXPECT_FALSE(app->isStarted());
  EXPECT_EQ(app->status().mcpState, MCPState::active);
  QCoreApplication::processEvents();
  EXPECT_THAT(terminal->calls(), IsEmpty());
  EXPECT_THAT(prompts, IsEmpty());
  app->prepareForTermination();
  app.reset();
  EXPECT_TRUE(std::filesystem::exists(historyFile())) << "it is the other's to delete";
  headless->signal(SIGTERM);
  EXPECT_EQ(headless->wait(), 0);
}

TEST_F(ServingTest, TakingOverEndsTheOtherAndStarts) {
  writeSettings({.retentionDays = 30});
  const auto headless = startHeadless();
  app = std::make_unique<AppModel>(options);
  andWaitForTheWork([this] { app->serving().takeOver(); });
  EXPECT_FALSE(app->serving().otherBridge());
  EXPECT_EQ(app->serving().problem(), "");
  EXPECT_EQ(headless->wait(), 0);
  ASSERT_TRUE(spinUntil([this] { return hasRefreshed(1); }));
  EXPECT_EQ(app->settings().retentionDays, 30);
  EXPECT_TRUE(listOverTheSocket().ok);
  EXPECT_EQ(terminal->callCount("listSessions"), 2u) << "our refresh and the client's call";
  app->setPaused(true);
  EXPECT_EQ(sendCommand("ls").error->code, ErrorCode::mcpPaused);
}

TEST_F(ServingTest, OneThatCannotBeEndedStaysAndItSaysWhy) {
  BridgeHost other({.environment = options.bridge.environment,
                    .makeTerminal = [](const auto&) { return std::make_unique<testing::FakeTerminal>(); }});
  other.startServing();
  app = std::make_unique<AppModel>(options);
  // It is this very process, which is not one to end.
  andWaitForTheWork([this] { app->serving().takeOver(); });
  EXPECT_TRUE(app->serving().otherBridge());
  EXPECT_NE(app->serving().problem(), "");
  EXPECT_THAT(terminal->calls(), IsEmpty());
}

TEST_F(ServingTest, AfterTheLastDescriptorItSaysSoAndServesAgainWhenAsked) {
  startApp();
  runOutOfDescriptors();
  EXPECT_EQ(app->serving().problem().toStdString(),
            "MCP clients cannot connect. accept: Too many open files.");
  EXPECT_THROW(listOverTheSocket(), UnixSocketError);
  andWaitForTheWork([this] { app->serving().restart(); });
  EXPECT_EQ(app->serving().problem(), "");
  EXPECT_TRUE(listOverTheSocket().ok);
  runOutOfDescriptors();
  EXPECT_THAT(app->serving().problem().toStdString(), HasSubstr("Too many open files"))
      << "the new one says it";
}

TEST_F(ServingTest, WithoutAServerEverythingElseWorksAndItSaysWhy) {
  testing::writeFile(socketURL(), "a regular file");
  startApp();
  EXPECT_EQ(app->localServer(), nullptr);
  EXPECT_TRUE(app->serving().problem().startsWith("MCP clients cannot connect. " +
                                                  text(socketURL().string()) + ": "));
  EXPECT_THAT(app->serving().problem().toStdString(), ::testing::Not(HasSubstr("unsafeEndpoint")));
  {
    const auto korean = Translation::installed(Language::korean);
    EXPECT_FALSE(app->serving().problem().contains("MCP clients cannot connect"));
  }
  QLocale::setDefault(QLocale::system());
  EXPECT_THAT(app->sessions(), SizeIs(2));
  andRefresh([this] { app->setPermission(SessionPermission::allowed, app->sessions()[0].sessionId); });
  EXPECT_EQ(app->sessions()[0].permission, SessionPermission::allowed);
  std::filesystem::remove(socketURL());
  andWaitForTheWork([this] { app->serving().restart(); });
  EXPECT_TRUE(listOverTheSocket().ok);
}

}  // namespace
}  // namespace velmora
