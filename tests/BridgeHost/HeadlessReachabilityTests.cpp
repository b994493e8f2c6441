// The bridge as a process stays reachable, whatever becomes of the folder with its socket.
#include <gmock/gmock.h>

#include "LocalControl/UnixSocketClient.h"
#include "tests/BridgeHost/HeadlessFixture.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::eventually;
using ::testing::HasSubstr;

class HeadlessReachability : public testing::HeadlessFixture {
 protected:
  HeadlessReachability() {
    environment["XDG_RUNTIME_DIR"] = runtime.string();
    environment["TMPDIR"] = temporary.string();
    fs::create_directory(runtime);
    fs::create_directory(temporary);
  }

  static fs::path socketIn(const fs::path& base) { return base / "app.velmora.Velmora/control-v1.sock"; }
  static bool answersIn(const fs::path& base) { return UnixSocketClient::isAnswering(socketIn(base)); }
  void start() {
    headless = launch();
    startedAt = headless->readLine().value_or("");
  }
  int endAndReadErrors() {
    headless->signal(SIGTERM);
    const int status = headless->wait();
    errors = headless->restOfErrors();
    headless.reset();
    return status;
  }
  int run(const std::string& command) {
    testing::ChildProgram program({VELMORA_BIN "/velmora", command}, environment);
    output = program.restOfOutput();
    return program.wait();
  }

  static constexpr auto wayTmuxIsAsked = "\nOK    tmux server: asked ";
  const fs::path runtime = directory / "run";
  const fs::path temporary = directory / "tmp";
  std::string startedAt;
  std::string errors;
  std::string output;
};

TEST_F(HeadlessReachability, ListensAgainAfterItsSocketFileWasRemoved) {
  start();
  fs::remove(socketIn(runtime));
  EXPECT_TRUE(eventually([&] { return answersIn(runtime); }));
  EXPECT_EQ(run("status"), 0);
  EXPECT_EQ(endAndReadErrors(), 0);
  EXPECT_THAT(errors, HasSubstr("the socket had gone; serving at " + socketIn(runtime).string()));
  EXPECT_FALSE(fs::exists(socketIn(runtime)));
}

TEST_F(HeadlessReachability, ListensAgainInARuntimeFolderThatWasRemovedAndMadeAnew) {
  startTmux();
  start();
  EXPECT_EQ(run("doctor"), 0);
  EXPECT_THAT(output, HasSubstr(wayTmuxIsAsked));
  fs::remove_all(runtime);
  fs::create_directory(runtime);
  EXPECT_TRUE(eventually([&] { return answersIn(runtime); }));
  EXPECT_EQ(run("doctor"), 0) << output;
  EXPECT_THAT(output, HasSubstr(wayTmuxIsAsked));
  EXPECT_EQ(endAndReadErrors(), 0);
  EXPECT_FALSE(fs::exists(socketIn(runtime)));
}

TEST_F(HeadlessReachability, MovesIntoARuntimeFolderThatComesLaterWithAllThatTheDoctorReads) {
  startTmux();
  fs::remove(runtime);
  start();
  ASSERT_EQ(startedAt, socketIn(temporary));
  EXPECT_EQ(run("doctor"), 0);
  EXPECT_THAT(output, HasSubstr(wayTmuxIsAsked));
  fs::create_directory(runtime);
  EXPECT_TRUE(eventually([&] { return answersIn(runtime); }));
  EXPECT_EQ(run("doctor"), 0);
  EXPECT_THAT(output, HasSubstr(wayTmuxIsAsked));
  EXPECT_EQ(endAndReadErrors(), 0);
  for (const auto& base : {runtime, temporary})
    EXPECT_FALSE(fs::exists(socketIn(base).parent_path() / "tmux-way"));
}

// The bridge of a cron job or a container has other surroundings than the client.
TEST_F(HeadlessReachability, IsFoundAtAFurtherPlaceThatTheRuleNames) {
  environment["XDG_RUNTIME_DIR"] = temporary.string();
  start();
  ASSERT_EQ(startedAt, socketIn(temporary));
  environment["XDG_RUNTIME_DIR"] = runtime.string();
  EXPECT_EQ(run("status"), 0);
  EXPECT_EQ(run("doctor"), 0);
  EXPECT_THAT(output, HasSubstr("socket: " + socketIn(temporary).string() +
                                ", yours alone; nothing answers at " + socketIn(runtime).string() + "\n"));
}

TEST_F(HeadlessReachability, ASecondOneEndsAtOnceBehindAStoppedOneWhoseQueueIsFull) {
  start();
  headless->signal(SIGSTOP);
  std::vector<UnixSocketConnection> waiting;
  try {
    while (true) waiting.push_back(UnixSocketClient::connectWithoutBlocking(socketIn(runtime)));
  } catch (const UnixSocketError&) {  // the queue is full
  }
  const auto second = launch();
  EXPECT_EQ(second->wait(), 1);
  EXPECT_THAT(second->restOfErrors(), HasSubstr("already running"));
  headless->signal(SIGCONT);
}

}  // namespace
}  // namespace velmora
