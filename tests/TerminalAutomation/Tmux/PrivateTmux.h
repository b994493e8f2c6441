// A tmux server of the test's own: its own socket, home and configuration, ended with the test.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "TerminalAutomation/Tmux/TmuxProcessTransport.h"
#include "TerminalAutomation/Tmux/TmuxTerminal.h"
#include "tests/support/Eventually.h"
#include "tests/support/Files.h"
#include "tests/support/ProcessSessions.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Thrown.h"

namespace velmora::testing {

class PrivateTmux : public ::testing::Test {
 protected:
  PrivateTmux() {
    const char* const path = std::getenv("PATH");
    environment_ = {{"PATH", path == nullptr ? "/usr/bin:/bin" : path},
                    {"HOME", home().string()},
                    {"SHELL", "/bin/bash"},
                    {"LANG", "C.UTF-8"},
                    {"TERM", "xterm-256color"},
                    {"XDG_CONFIG_HOME", (home() / "config").string()},
                    {"TMUX_TMPDIR", directory_.path().string()}};
    std::filesystem::create_directories(home() / "config");
    // Or the first fish would make them from every manual page of the machine, in the background.
    std::filesystem::create_directories(home() / ".local/share/fish/generated_completions");
    writeFile(home() / ".bashrc", "PS1='$ '\n");
    writeFile(home() / ".profile", "");
    writeFile(home() / ".bash_profile", "PS1='$ '\n");
    writeFile(home() / ".zshrc", "PS1='$ '\n");
    transport_ = std::make_unique<TmuxProcessTransport>(environment_, std::nullopt, std::nullopt);
  }

  void TearDown() override {
    executor_.reset();
    endServer();
  }

  std::filesystem::path home() const { return directory_ / "home"; }

  TmuxOptions options() const {
    return {
        .environment = environment_, .temporaryDirectory = directory_ / "temporary", .homeDirectory = home()};
  }

  SerialTerminal& executor() {
    if (!executor_) executor_ = makeTmuxTerminal(options());
    return *executor_;
  }

  TmuxAnswer ask(std::vector<std::string> arguments) {
    return transport_->run({.arguments = std::move(arguments),
                            .deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20)});
  }

  /// Runs tmux on the private server; returns its output without the last line end.
  std::string tmux(std::vector<std::string> arguments) {
    const std::string first = arguments.front();
    TmuxAnswer answer = ask(std::move(arguments));
    EXPECT_EQ(answer.exitStatus, 0) << first << ": " << answer.errorOutput;
    EXPECT_EQ(answer.errorOutput, "") << first;
    if (answer.output.ends_with('\n')) answer.output.pop_back();
    return std::move(answer.output);
  }

  /// Starts the server with one session of one pane, 100 x 30, that runs `command` (the shell by default).
  void startServer(const std::vector<std::string>& command = {}) {
    makeFolder();
    std::vector<std::string> arguments{"-f",   "/dev/null", "new-session", "-d", "-s",
                                       "main", "-x",        "100",         "-y", "30"};
    arguments.insert(arguments.end(), command.begin(), command.end());
    tmux(arguments);
    server_ = serverProcess();
  }

  void makeFolder() {
    const std::filesystem::path folder = std::filesystem::path(transport_->socketPath()).parent_path();
    std::filesystem::create_directories(folder);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
  }

  std::optional<pid_t> serverProcess() {
    const TmuxAnswer answer = ask({"display-message", "-p", "#{pid}"});
    if (answer.exitStatus != 0 || answer.output.empty() || !answer.errorOutput.empty()) return std::nullopt;
    return static_cast<pid_t>(std::stol(answer.output));
  }

  void endServer() {
    // A test that failed may have left it stopped.
    if (server_ && isAlive(*server_)) ::kill(*server_, SIGCONT);
    server_.reset();
    const auto process = serverProcess();
    if (!process) return;
    const auto shells = ask({"list-panes", "-a", "-F", "#{pane_pid}"}).output;
    ask({"kill-server"});
    if (!eventually([&] { return !isAlive(*process); }, std::chrono::seconds(5))) ::kill(*process, SIGKILL);
    std::istringstream lines(shells);
    for (pid_t shell = 0; lines >> shell;) endSession(shell);
  }

  // A program that is just starting may not hear that its terminal has gone (sudo does not).
  static void endSession(pid_t shell) {
    if (eventually([&] { return processesOfSession(shell).empty(); }, std::chrono::seconds(1))) return;
    for (const auto process : processesOfSession(shell)) ::kill(process, SIGKILL);
  }

  std::vector<TerminalTabSnapshot> tabs() { return executor().listSessions().get(); }

  TerminalTabSnapshot onlyTab() {
    const auto all = tabs();
    EXPECT_EQ(all.size(), 1u);
    return all.empty() ? TerminalTabSnapshot{} : all.front();
  }

  /// The tab of the pane "%N".
  TerminalTabSnapshot tabOf(const std::string& pane) {
    const std::string tty = tmux({"display-message", "-p", "-t", pane, "#{pane_tty}"});
    for (const TerminalTabSnapshot& tab : tabs()) {
      if (tab.tty == tty) return tab;
    }
    ADD_FAILURE() << "no tab for " << pane;
    return {};
  }

  bool isBusy(const std::string& tty) {
    for (const TerminalTabSnapshot& tab : tabs()) {
      if (tab.tty == tty) return tab.busy;
    }
    return false;
  }

  std::filesystem::path recording(const std::string& name = "recording") const { return directory_ / name; }

  /// The command line of a pane that records what is typed into it.
  std::vector<std::string> recorder(const std::string& name = "recording",
                                    const std::string& modes = "-") const {
    return {TMUX_RECORDER, recording(name).string(), modes};
  }

  void waitForRecorder(const std::string& name = "recording") const {
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(recording(name)); }));
  }

  /// Waits until `expected` was recorded, and checks that it is all.
  void expectRecorded(const std::string& expected, const std::string& name = "recording") {
    eventually([&] { return contentOf(recording(name)).size() >= expected.size(); });
    EXPECT_TRUE(contentOf(recording(name)) == expected)
        << "recorded " << contentOf(recording(name)).size() << " bytes, expected " << expected.size();
  }

  void sendTo(const TerminalTabSnapshot& tab, const std::string& text) {
    executor().send(text, tab.tty, tab.windowId, /*allowBusy=*/true).get();
  }

  std::string visibleText(const TerminalTabSnapshot& tab) {
    return executor().readOutput(OutputSource::visible, 50'000, tab.tty, tab.windowId).get().text;
  }

  TemporaryDirectory directory_;
  Environment environment_;
  std::unique_ptr<TmuxProcessTransport> transport_;
  std::unique_ptr<SerialTerminal> executor_;
  std::optional<pid_t> server_;  // of startServer
};

}  // namespace velmora::testing
