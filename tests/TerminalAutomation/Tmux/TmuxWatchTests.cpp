#include <gtest/gtest.h>
#include <sys/stat.h>

#include "ShellIntegration/ShellRecord.h"
#include "TerminalAutomation/Tmux/TmuxOperations.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"
#include "tests/support/FakeTime.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::samplePane;

constexpr std::int64_t beforeTheWatch = 1, afterIt = 9'000'000'000'000'000;  // microseconds since 1970
const std::string promptAtFirst = std::string(guardPassed) + "\t2\t0\t0\t2000\n$ \n";
const std::string promptAgain = std::string(guardPassed) + "\t2\t2\t0\t2000\n$ ls\nout\n$ \n";
const std::string textSince = std::string(guardPassed) + "\n$ ls\nout\n$ \n";

class TmuxWatchTest : public ::testing::Test {
 protected:
  TmuxWatchTest() {
    pane_.tty = "/dev/nowhere";
    processes_.states[pane_.process] = {
        .name = "bash", .group = pane_.process, .foregroundGroup = pane_.process, .startTicks = 900};
    processes_.modes[pane_.tty] = {.editsLine = true};
    const auto folder = directory_ / shellRecordFolder;
    std::filesystem::create_directories(folder);
    ::chmod(folder.c_str(), 0700);
    record_ = folder / "nowhere";
  }

  void answers(const std::vector<std::string>& outputs) {
    tmux_.answers.clear();
    for (const std::string& output : outputs) tmux_.answers.push_back({.output = output});
  }

  void note(const ShellRecord& record) {
    std::string line = "1";
    const auto add = [&](std::int64_t number) { line += " " + std::to_string(number); };
    for (const std::int64_t number :
         {std::int64_t{record.process}, record.startTicks, record.instance, record.number})
      add(number);
    if (record.status) {
      add(*record.status);
    } else {
      line += " -";
    }
    add(record.began);
    add(record.ended);
    testing::writeFile(record_, line + "\n");
    ::chmod(record_.c_str(), 0600);
  }

  /// What is told of a command between whose beginning and end the shell's note changed like this.
  std::optional<int> statusBetween(const std::optional<ShellRecord>& before, const ShellRecord& after) {
    std::filesystem::remove(record_);
    if (before) note(*before);
    answers({testing::paneAnswer(pane_)});
    const auto tab = operations_.listSessions(deadline_).front();
    answers({promptAtFirst});
    const auto watch = operations_.watch("ls", {tab.tty, tab.windowId}, deadline_);
    note(after);
    answers({promptAgain, textSince});
    const auto view = watch->look(100, false, deadline_);
    EXPECT_TRUE(view.taken);
    EXPECT_EQ(view.output, "out");
    return view.exitStatus;
  }

  /// What counts as printed by `command`, when the rows since its prompt, "$ ", are these.
  std::string outputOf(const std::string& command, const std::string& rows) {
    answers({testing::paneAnswer(pane_)});
    const auto tab = operations_.listSessions(deadline_).front();
    answers({promptAtFirst});
    const auto watch = operations_.watch(command, {tab.tty, tab.windowId}, deadline_);
    const auto last = std::count(rows.begin(), rows.end(), '\n') - 1;
    const auto begin = rows.rfind('\n', rows.size() - 2) + 1;
    const auto cursor = std::to_string(rows.size() - 1 - begin) + "\t" + std::to_string(last);
    answers({std::string(guardPassed) + "\t" + cursor + "\t0\t2000\n" + rows,
             std::string(guardPassed) + "\n" + rows});
    const auto view = watch->look(100, false, deadline_);
    EXPECT_TRUE(view.taken) << rows;
    return view.output;
  }

  TemporaryDirectory directory_;
  std::filesystem::path record_;
  PaneRow pane_ = samplePane(3, 2);
  testing::ScriptedTransport::State tmux_;
  testing::ScriptedProcesses::State processes_;
  testing::ScriptedDesktop::State desktop_;
  TmuxParts parts() {
    return {.transport = std::make_unique<testing::ScriptedTransport>(tmux_),
            .processes = std::make_unique<testing::ScriptedProcesses>(processes_),
            .desktop = std::make_unique<testing::ScriptedDesktop>(desktop_),
            .drawPicture = [](const PaneScreen&) { return std::string("png"); }};
  }
  TmuxOperations operations_{{.environment = {{"PATH", "/usr/bin:/bin"}},
                              .program = "/opt/tmux",
                              .temporaryDirectory = directory_.path(),
                              .homeDirectory = "/home/user",
                              .uuid = testing::countingUuids(),
                              .sleep = [](std::chrono::milliseconds) {}},
                             parts()};
  const TmuxOperations::Deadline deadline_ = std::chrono::steady_clock::now() + std::chrono::minutes(5);
  const ShellRecord before_{
      .process = pane_.process, .startTicks = 900, .instance = 7, .number = 3, .status = 0};
  const ShellRecord after_{.process = pane_.process,
                           .startTicks = 900,
                           .instance = 7,
                           .number = 4,
                           .status = 42,
                           .began = afterIt};
};

TEST_F(TmuxWatchTest, ToldOfTheOneCommandThatEndedItKnowsTheStatus) {
  EXPECT_EQ(statusBetween(before_, after_), 42);
  auto withoutClock = after_;
  withoutClock.began = 0;
  EXPECT_EQ(statusBetween(before_, withoutClock), 42);
  auto unknown = after_;
  unknown.status.reset();
  EXPECT_EQ(statusBetween(before_, unknown), std::nullopt);
}

TEST_F(TmuxWatchTest, WithAnEmptyPromptTheLastLineIsOutput) {
  answers({testing::paneAnswer(pane_)});
  const auto tab = operations_.listSessions(deadline_).front();
  answers({std::string(guardPassed) + "\t0\t0\t0\t2000\n\n"});
  const auto watch = operations_.watch("ls", {tab.tty, tab.windowId}, deadline_);
  answers({std::string(guardPassed) + "\t0\t2\t0\t2000\nls\nout\n\n",
           std::string(guardPassed) + "\nls\nout\n\n"});
  const auto view = watch->look(100, false, deadline_);
  EXPECT_TRUE(view.taken);
  EXPECT_EQ(view.output, "out");
}

TEST_F(TmuxWatchTest, ANumberThatIsNotTheNextOneIsOfAnotherCommand) {
  for (const std::int64_t number : {0, 2, 3, 5}) {
    auto other = after_;
    other.number = number;
    EXPECT_EQ(statusBetween(before_, other), std::nullopt) << number;
  }
}

TEST_F(TmuxWatchTest, AnotherInstanceIsAnotherShellThoughTheProcessIsTheSame) {
  auto other = after_;
  other.instance = 8;
  EXPECT_EQ(statusBetween(before_, other), std::nullopt);
}

TEST_F(TmuxWatchTest, AnotherProcessOrOneThatHadItsNumberBeforeIsNoWitness) {
  auto other = after_;
  other.process += 1;
  EXPECT_EQ(statusBetween(before_, other), std::nullopt);
  other = after_;
  other.startTicks = 899;
  EXPECT_EQ(statusBetween(before_, other), std::nullopt);
}

TEST_F(TmuxWatchTest, WhatBeganBeforeTheWatchIsNotItsCommand) {
  auto earlier = after_;
  earlier.began = beforeTheWatch;
  EXPECT_EQ(statusBetween(before_, earlier), std::nullopt);
}

TEST_F(TmuxWatchTest, WithoutANoteFromBeforeNothingIsTold) {
  EXPECT_EQ(statusBetween(std::nullopt, after_), std::nullopt);
}

TEST_F(TmuxWatchTest, WhatFishSuggestedBehindTheCommandIsNoOutput) {
  processes_.states[pane_.process].name = "fish";
  EXPECT_EQ(outputOf("echo a; echo b", "$ echo a; echo bin/\na\nb\n$ \n"), "a\nb");
  EXPECT_EQ(outputOf("if true\nls\nend", "$ if true\n      ls\n  end suggested\nout\n$ \n"), "out");
  EXPECT_EQ(outputOf("cd b", "$ cd bin/\n$ \n"), "");
}

TEST_F(TmuxWatchTest, OutputThatEndsWithoutALineEndStandsBeforeThePrompt) {
  EXPECT_EQ(outputOf("printf hi", "$ printf hi\nhi$ \n"), "hi");
  EXPECT_EQ(outputOf("printf 'a\\nb '", "$ printf 'a\\nb '\na\nb $ \n"), "a\nb ");
  EXPECT_EQ(outputOf("cd /tmp", "$ cd /tmp\n/tmp > \n"), "") << "another prompt is no output";
}

TEST_F(TmuxWatchTest, WhatIsNotInThePromptsRowIsOutputThoughItBeginsLikeTheCommand) {
  processes_.states[pane_.process].name = "fish";
  EXPECT_EQ(outputOf("ls", "lsblk\nout\n$ \n"), "lsblk\nout");
  EXPECT_EQ(outputOf("ls", "% lsblk\nout\n$ \n"), "% lsblk\nout");
  processes_.states[pane_.process].name = "bash";
  EXPECT_EQ(outputOf("ls", "$ lsblk\nout\n$ \n"), "$ lsblk\nout");
}

}  // namespace
}  // namespace velmora
