#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <thread>

#include "System/ChildProcess.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::namesIn;
using namespace std::chrono_literals;
using End = ChildResult::End;

class ChildProcess : public ::testing::Test {
 protected:
  ChildRequest shell(const std::string& script) const {
    return {.program = "/bin/sh",
            .arguments = {"-c", script},
            .environment = {"PATH=/usr/bin:/bin", "GREETING=안녕"},
            .deadline = std::chrono::steady_clock::now() + 20s,
            .outputLimit = 1'000'000};
  }
  /// Each thread lists those that it started itself.
  static std::string children() {
    std::string processes;
    for (const std::string& thread : namesIn("/proc/self/task")) {
      processes += contentOf("/proc/self/task/" + thread + "/children");
    }
    return processes;
  }

  void TearDown() override { EXPECT_EQ(children(), ""); }

  ChildProcessRunner runner_;
};

TEST_F(ChildProcess, GivesStreamsEnvironmentAndStatus) {
  const ChildResult result = runner_.run(shell("echo $GREETING; echo wrong >&2; exit 7"));
  EXPECT_EQ(result.end, End::exited);
  EXPECT_EQ(result.exitStatus, 7);
  EXPECT_EQ(result.output, "안녕\n");
  EXPECT_EQ(result.errorOutput, "wrong\n");
  EXPECT_EQ(runner_.run(shell("kill -9 $$")).exitStatus, 128 + 9);
}

TEST_F(ChildProcess, FeedsMoreThanAPipeHolds) {
  ChildRequest request = shell("cat");
  request.standardInput = std::string(900'000, 'x');
  EXPECT_TRUE(runner_.run(request).output == *request.standardInput);
}

TEST_F(ChildProcess, ReadsNothingWithoutStandardInput) { EXPECT_EQ(runner_.run(shell("cat")).output, ""); }

TEST_F(ChildProcess, SurvivesAChildThatReadsNothing) {
  ChildRequest request = shell("exec <&-; sleep 0.1; exit 3");
  request.standardInput = std::string(900'000, 'x');
  EXPECT_EQ(runner_.run(request).exitStatus, 3);
  sigset_t pending;
  ::sigpending(&pending);
  EXPECT_EQ(::sigismember(&pending, SIGPIPE), 0);
}

TEST_F(ChildProcess, KillsAtTheDeadline) {
  ChildRequest request = shell("echo begun; exec sleep 30");
  request.deadline = std::chrono::steady_clock::now() + 200ms;
  const auto start = std::chrono::steady_clock::now();
  const ChildResult result = runner_.run(request);
  EXPECT_EQ(result.end, End::timedOut);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

TEST_F(ChildProcess, DoesNotWaitForAnotherHolderOfTheStreams) {
  const TemporaryDirectory directory;
  const auto start = std::chrono::steady_clock::now();
  const ChildResult result =
      runner_.run(shell("sleep 30 & echo $! > " + (directory / "pid").string() + "; echo out"));
  EXPECT_EQ(result.output, "out\n");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
  ::kill(static_cast<pid_t>(std::stol(contentOf(directory / "pid"))), SIGKILL);
}

TEST_F(ChildProcess, StopsAtTheOutputLimit) {
  ChildRequest request = shell("exec yes");
  const ChildResult result = runner_.run(request);
  EXPECT_EQ(result.end, End::outputTooLarge);
  EXPECT_LE(result.output.size(), request.outputLimit);
}

TEST_F(ChildProcess, SaysWhyAProgramDoesNotStart) {
  ChildRequest request = shell("");
  request.program = "/nowhere/program";
  const ChildResult result = runner_.run(request);
  EXPECT_EQ(result.end, End::notStarted);
  EXPECT_EQ(result.startError, ENOENT);
}

TEST_F(ChildProcess, CancelEndsTheRunUnderWayAndAllLaterOnes) {
  std::thread other([this] { runner_.cancel(); });
  EXPECT_EQ(runner_.run(shell("exec sleep 30")).end, End::cancelled);
  EXPECT_EQ(runner_.run(shell("exec sleep 30")).end, End::cancelled);
  other.join();
}

TEST_F(ChildProcess, InheritsNoDescriptorAndLeavesNone) {
  const int inheritable = ::open("/dev/null", O_RDONLY);
  const std::size_t before = namesIn("/proc/self/fd").size();
  // ls itself opens the folder it lists.
  EXPECT_EQ(runner_.run(shell("exec ls /proc/self/fd")).output, "0\n1\n2\n3\n");
  for (int i = 0; i < 50; ++i) runner_.run(shell("exit 1"));
  EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
  ::close(inheritable);
}

TEST_F(ChildProcess, StartsWithDefaultSignals) {
  const auto old = ::signal(SIGINT, SIG_IGN);
  EXPECT_EQ(runner_.run(shell("kill -INT $$; echo alive")).output, "");
  ::signal(SIGINT, old);
}

TEST_F(ChildProcess, RunsFromManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([this, i] {
      for (int n = 0; n < 20; ++n) {
        EXPECT_EQ(runner_.run(shell("echo " + std::to_string(i))).output, std::to_string(i) + "\n");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace velmora
