#include <sys/stat.h>
#include <unistd.h>

#include <sstream>

#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "TerminalAutomation/Tmux/TmuxErrors.h"
#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::eventually;
using testing::namesIn;
using testing::structuredError;
using testing::writeFile;
using namespace std::chrono_literals;

class TmuxFailures : public testing::PrivateTmux {
 protected:
  SerialTerminal& impatientExecutor() {
    TmuxOptions impatient = options();
    impatient.deadlines = {.operation = 700ms, .history = 900ms, .status = 800ms};
    executor_ = makeTmuxTerminal(impatient);
    return *executor_;
  }

  /// Whose start can be seen.
  void askByProgram() {
    TmuxOptions byProgram = options();
    byProgram.transport = TmuxTransportChoice::program;
    executor_ = makeTmuxTerminal(byProgram);
  }

  static std::size_t descriptorCount() { return namesIn("/proc/self/fd").size(); }

  /// The names of this process's children, zombies among them; a sanitizer's helper is not meant.
  static std::string children() {
    std::string names;
    // Each thread lists those that it started itself.
    for (const std::string& thread : namesIn("/proc/self/task")) {
      std::istringstream processes(contentOf("/proc/self/task/" + thread + "/children"));
      for (std::string process; processes >> process;) {
        const std::string name = contentOf("/proc/" + process + "/comm");
        if (!name.starts_with("llvm-symbolizer")) names += name;
      }
    }
    return names;
  }
};

/// Whether a tmux program of this process waits for its server.
bool aChildWaits() {
  for (const std::string& thread : namesIn("/proc/self/task")) {
    std::istringstream processes(contentOf("/proc/self/task/" + thread + "/children"));
    for (std::string process; processes >> process;) {
      // It sleeps once it has asked.
      const std::string stat = contentOf("/proc/" + process + "/stat");
      if (stat.find("(tmux: client) S") != std::string::npos) return true;
    }
  }
  return false;
}

TEST_F(TmuxFailures, NoServerIsNotRunning) {
  EXPECT_EQ(executor().status().get(), TerminalRuntimeStatus{});
  const auto error = structuredError([&] { executor().listSessions().get(); });
  EXPECT_EQ(error.code, ErrorCode::terminalNotRunning);
  EXPECT_EQ(error.message, "No tmux server is running.");
  EXPECT_TRUE(error.retryable);
}

TEST_F(TmuxFailures, AStaleSocketIsNotRunning) {
  startServer();
  const pid_t process = serverProcess().value();
  ::kill(process, SIGKILL);
  ASSERT_TRUE(eventually([&] { return !testing::isAlive(process); }));
  ASSERT_TRUE(std::filesystem::exists(transport_->socketPath()));
  EXPECT_FALSE(executor().status().get().running);
  EXPECT_EQ(structuredError([&] { executor().listSessions().get(); }).code, ErrorCode::terminalNotRunning);
}

TEST_F(TmuxFailures, AServerWithoutSessionsHasNoWindows) {
  startServer();
  tmux({"set-option", "-g", "exit-empty", "off"});
  tmux({"kill-session", "-t", "main"});
  EXPECT_EQ(executor().status().get(),
            (TerminalRuntimeStatus{
                .running = true, .windowCount = 0, .permission = AutomationPermission::granted}));
  EXPECT_TRUE(tabs().empty());
  EXPECT_EQ(executor().createWindow().get().tabIndex, 1);
}

TEST_F(TmuxFailures, AMissingProgramIsSaid) {
  TmuxOptions wrong = options();
  wrong.program = directory_ / "nowhere";
  const auto error = structuredError([&] { makeTmuxTerminal(wrong)->listSessions().get(); });
  EXPECT_EQ(error.code, ErrorCode::terminalNotAvailable);
  EXPECT_NE(error.message.find("could not be started"), std::string::npos) << error.message;
}

TEST_F(TmuxFailures, AFolderThatOthersMayWriteIsRefused) {
  startServer();
  const std::filesystem::path folder = std::filesystem::path(transport_->socketPath()).parent_path();
  ::chmod(folder.c_str(), 0777);
  for (const auto& error : {structuredError([&] { executor().listSessions().get(); }),
                            structuredError([&] { executor().status().get(); }),
                            structuredError([&] { executor().createWindow().get(); })}) {
    EXPECT_EQ(error.code, ErrorCode::automationPermissionDenied);
    EXPECT_FALSE(error.retryable);
    EXPECT_NE(error.message.find(folder.string()), std::string::npos) << error.message;
  }
  ::chmod(folder.c_str(), 0700);
  EXPECT_EQ(tabs().size(), 1u);
}

TEST_F(TmuxFailures, AHungServerEndsEveryOperationAtItsDeadlineAndGetsNothingLater) {
  startServer(recorder());
  waitForRecorder();
  auto& executor = impatientExecutor();
  const auto tab = onlyTab();
  const pid_t server = serverProcess().value();
  ::kill(server, SIGSTOP);
  const auto askEverything = [&] {
    const auto start = std::chrono::steady_clock::now();
    for (const auto& error :
         {structuredError([&] { executor.status().get(); }),
          structuredError([&] { executor.listSessions().get(); }),
          structuredError([&] { executor.createWindow().get(); }),
          structuredError([&] { executor.send("lost", tab.tty, tab.windowId, true).get(); }),
          structuredError([&] { executor.send(TerminalKey::tab, 1, tab.tty, tab.windowId, true).get(); }),
          structuredError(
              [&] { executor.readOutput(OutputSource::history, 9, tab.tty, tab.windowId).get(); }),
          structuredError([&] { executor.captureScreen(tab.tty, tab.windowId).get(); }),
          structuredError([&] { executor.focus(tab.tty, tab.windowId).get(); })}) {
      EXPECT_EQ(error.code,
                error.retryable ? ErrorCode::terminalNotAvailable : ErrorCode::appleScriptExecutionFailed)
          << error.message;
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 8 * 700ms + 3s);
    EXPECT_EQ(children(), "") << "a process is left";
  };
  // The thread sanitizer opens pipes to its symbolizer once, at a moment of its own; a leak grows each time.
  const auto leavesNoDescriptor = [&] {
    const std::size_t before = descriptorCount();
    askEverything();
    return eventually([&] { return descriptorCount() <= before; }, 2s);
  };
  EXPECT_TRUE(leavesNoDescriptor() || leavesNoDescriptor()) << descriptorCount();
  ::kill(server, SIGCONT);
  ASSERT_TRUE(eventually([&] { return serverProcess() == server; }));
  tmux({"send-keys", "-t", "%0", "-l", "end"});
  expectRecorded("end");
}

TEST_F(TmuxFailures, AQueueBehindAHungServerEndsWithTheFirstDeadline) {
  startServer(recorder());
  auto& executor = impatientExecutor();
  const pid_t server = serverProcess().value();
  ::kill(server, SIGSTOP);
  const auto start = std::chrono::steady_clock::now();
  std::vector<std::future<std::vector<TerminalTabSnapshot>>> queue;
  for (int count = 0; count < 8; ++count) queue.push_back(executor.listSessions());
  for (auto& answer : queue) {
    EXPECT_EQ(structuredError([&] { answer.get(); }).code, ErrorCode::terminalNotAvailable);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, 4 * 700ms) << "one after another they would take eight";
  ::kill(server, SIGCONT);
}

TEST_F(TmuxFailures, ATextWhoseServerHangsIsNeverTypedLater) {
  startServer(recorder());
  waitForRecorder();
  onlyTab();
  const auto listing = parseListing(ask(paneListing()).output);
  const pid_t server = serverProcess().value();
  ::kill(server, SIGSTOP);
  // Past the look-up: the invocation that types meets the hung server.
  std::vector<PaneCommand> commands{typeText(listing->panes.front(), "lost", "one"),
                                    typeText(listing->panes.front(), std::string(65'536, 'x'), "two"),
                                    typeText(listing->panes.front(), "", "three"),
                                    pressKey(listing->panes.front(), TerminalKey::tab, 1, "four")};
  for (PaneCommand& command : commands) {
    const TmuxAnswer answer = transport_->run({.arguments = command.arguments,
                                               .standardInput = command.standardInput,
                                               .deadline = std::chrono::steady_clock::now() + 300ms});
    EXPECT_EQ(answer.end, TmuxAnswer::End::timedOut);
    const auto error = tmuxFailure(answer, TmuxEffect::typed);
    ASSERT_TRUE(error.has_value());
    EXPECT_NE(error->message.find("outcome is unknown"), std::string::npos);
    EXPECT_FALSE(error->retryable);
  }
  ::kill(server, SIGCONT);
  ASSERT_TRUE(eventually([&] { return serverProcess() == server; }));
  tmux({"send-keys", "-t", "%0", "-l", "end"});
  expectRecorded("end");
}

TEST_F(TmuxFailures, AServerThatDiesInMidCallIsReported) {
  startServer();
  askByProgram();
  const auto tab = onlyTab();
  const pid_t server = serverProcess().value();
  ::kill(server, SIGSTOP);
  auto sending = executor().send("echo x", tab.tty, tab.windowId, true);
  ASSERT_TRUE(eventually([] { return aChildWaits(); })) << "it has not reached the server";
  ::kill(server, SIGKILL);
  const auto error = structuredError([&] { sending.get(); });
  EXPECT_EQ(error.code, ErrorCode::appleScriptExecutionFailed);
  EXPECT_NE(error.message.find("The outcome is unknown"), std::string::npos) << error.message;
  EXPECT_FALSE(executor().status().get().running);
}

TEST_F(TmuxFailures, DestructionDoesNotWaitForAHungServer) {
  startServer();
  askByProgram();
  onlyTab();
  const pid_t server = serverProcess().value();
  ::kill(server, SIGSTOP);
  auto first = executor().listSessions();
  auto second = executor().listSessions();
  EXPECT_TRUE(eventually([] { return children().starts_with("tmux"); })) << "the first has not begun";
  const auto start = std::chrono::steady_clock::now();
  executor_.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
  EXPECT_EQ(structuredError([&] { first.get(); }).code, ErrorCode::terminalNotAvailable);
  EXPECT_ANY_THROW(second.get()) << "it waited in the queue, or was begun and ended at once";
  EXPECT_EQ(children(), "");
  ::kill(server, SIGCONT);
}

/// A program in place of tmux that prints what a tmux of another kind would.
class TmuxImpostor : public TmuxFailures {
 protected:
  SerialTerminal& executorWith(const std::string& script) {
    makeFolder();
    writeFile(directory_ / "tmux", "#!/bin/sh\n[ \"$4\" = -V ] && echo 'tmux 3.9' && exit\n" + script + "\n");
    std::filesystem::permissions(directory_ / "tmux", std::filesystem::perms::owner_all);
    TmuxOptions altered = options();
    altered.program = directory_ / "tmux";
    executor_ = makeTmuxTerminal(altered);
    return *executor_;
  }
  StructuredError listingError(const std::string& script) {
    return structuredError([&] { executorWith(script).listSessions().get(); });
  }
};

TEST_F(TmuxImpostor, RefusalsThatCountAsSuccessAreErrors) {
  EXPECT_EQ(listingError("echo 'access not allowed' >&2").code, ErrorCode::automationPermissionDenied);
  const auto tooOld = listingError("echo 'server version is too old for client' >&2");
  EXPECT_EQ(tooOld.code, ErrorCode::terminalNotAvailable);
  EXPECT_NE(tooOld.message.find("tmux 3.9"), std::string::npos) << tooOld.message;
  EXPECT_EQ(listingError("echo 'not a row'").code, ErrorCode::appleScriptExecutionFailed);
}

TEST_F(TmuxImpostor, RefusalsKeepTheirMeaning) {
  EXPECT_EQ(listingError("echo 'error connecting to x (Permission denied)' >&2; exit 1").code,
            ErrorCode::automationPermissionDenied);
  EXPECT_EQ(listingError("echo 'client is read-only' >&2; exit 1").code,
            ErrorCode::automationPermissionDenied);
  EXPECT_EQ(listingError("echo 'error connecting to x (Connection refused)' >&2; exit 1").code,
            ErrorCode::terminalNotRunning);
  const auto mixed = listingError("echo 'server exited unexpectedly' >&2; exit 1");
  EXPECT_EQ(mixed.code, ErrorCode::terminalNotAvailable);
  EXPECT_NE(mixed.message.find("tmux 3.9"), std::string::npos) << mixed.message;
}

TEST_F(TmuxImpostor, OutputWithoutEndIsCutOff) {
  const auto error = listingError("exec yes");
  EXPECT_EQ(error.code, ErrorCode::outputUnavailable);
  EXPECT_EQ(children(), "");
}

TEST_F(TmuxImpostor, AProgramThatLeavesItsStreamsToAnotherDoesNotHoldTheCall) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(
      listingError("sleep 30 & echo $! > " + (directory_ / "sleeper").string() + "; echo 'no' >&2; exit 1")
          .code,
      ErrorCode::appleScriptExecutionFailed);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
  ::kill(static_cast<pid_t>(std::stol(contentOf(directory_ / "sleeper"))), SIGKILL);
}

}  // namespace
}  // namespace velmora
