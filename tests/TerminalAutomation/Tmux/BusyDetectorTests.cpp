#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "TerminalAutomation/Tmux/BusyDetector.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"

namespace velmora {
namespace {

constexpr pid_t shell = 10;
const std::string tty = "/dev/pts/1";

class BusyDetector : public ::testing::Test {
 protected:
  /// A bash with these arguments.
  PaneLook look(const std::vector<std::string>& arguments = {"-bash"}) {
    processes_.arguments[shell] = arguments;
    return lookAtPane(testing::ScriptedProcesses(processes_), shell, tty);
  }
  bool busy(const std::vector<std::string>& arguments = {"-bash"}) {
    EXPECT_NE(look(arguments), PaneLook::running);
    return look(arguments) == PaneLook::busy;
  }

  testing::ScriptedProcesses::State processes_{
      .states = {{shell, {.name = "bash", .group = shell, .foregroundGroup = shell}}},
      .arguments = {},
      .modes = {{tty, {.editsLine = true}}}};
};

TEST_F(BusyDetector, AShellThatEditsALineIsIdle) { EXPECT_FALSE(busy()); }

TEST_F(BusyDetector, TheShellOfAContainedWindowIsLookedForInside) {
  processes_.states = {{shell, {.name = "bwrap", .group = shell, .foregroundGroup = 12}},
                       {11, {.name = "bwrap", .parent = shell, .group = shell, .foregroundGroup = 12}},
                       {12, {.name = "bash", .parent = 11, .group = 12, .foregroundGroup = 12}}};
  processes_.arguments[12] = {"/bin/bash", "-l"};
  EXPECT_FALSE(busy({"bwrap", "--", "/bin/sh", "-c", "exec bash"}));
  processes_.arguments[12] = {"/bin/bash", "script"};
  EXPECT_TRUE(busy());
  processes_.arguments[12] = {"/bin/bash"};
  processes_.states[12].parent = 13;
  processes_.states[13] = {.name = "bash", .parent = 11, .group = 13, .foregroundGroup = 12};
  EXPECT_TRUE(busy()) << "a shell that another started inside";
  processes_.states[12].parent = 11;
  processes_.states[11].parent = 1;
  EXPECT_TRUE(busy()) << "a container of another window";
  processes_.states.erase(12);
  EXPECT_TRUE(busy()) << "nobody has the foreground";
}

TEST_F(BusyDetector, AnotherGroupInTheForegroundIsBusy) {
  processes_.states[shell].foregroundGroup = 11;
  EXPECT_TRUE(busy());
}

TEST_F(BusyDetector, AProgramThatIsNoShellIsBusy) {
  for (const char* name : {"vim", "python3", "tmux: server", "", "bashful"}) {
    processes_.states[shell].name = name;
    EXPECT_TRUE(busy()) << name;
  }
}

TEST_F(BusyDetector, AShellWhoseTerminalCollectsLinesIsBusy) {
  processes_.modes[tty] = {.collectsLines = true};
  EXPECT_TRUE(busy());
  processes_.modes.clear();
  EXPECT_FALSE(busy()) << "a terminal that cannot be asked does not tell";
}

TEST_F(BusyDetector, AShellWithoutALineEditorIsTakenForBusyOnlyOnTheProcessor) {
  processes_.modes[tty] = {.collectsLines = true};
  for (const char* name : {"sh", "dash", "ash"}) {
    processes_.states[shell].name = name;
    processes_.states[shell].running = false;
    EXPECT_EQ(look({"-sh"}), PaneLook::idle) << name;
    processes_.states[shell].running = true;
    EXPECT_EQ(look({"-sh"}), PaneLook::running) << name;
  }
  processes_.modes[tty] = {.collectsLines = true, .hidesLine = true};
  EXPECT_EQ(look({"-sh"}), PaneLook::busy) << "on the processor or not";
}

TEST_F(BusyDetector, AQuestionForOneKeyIsBusyInTheShellsThatAskSo) {
  processes_.modes[tty] = {};
  for (const char* name : {"bash", "zsh", "fish"}) {
    processes_.states[shell].name = name;
    EXPECT_TRUE(busy({name})) << name;
  }
  processes_.states[shell].name = "nu";  // it switches signals off at its prompt too
  EXPECT_FALSE(busy({"nu"}));
}

TEST_F(BusyDetector, AShellWithoutALineEditorIsBusyWhileALineIsNotShown) {
  processes_.states[shell].name = "dash";
  processes_.modes[tty] = {.collectsLines = true, .hidesLine = true};
  EXPECT_TRUE(busy({"dash"}));
}

TEST_F(BusyDetector, AScriptOrACommandStringIsBusy) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"bash", "-c", "x"},
                                             {"bash", "-lc", "x"},
                                             {"bash", "script.sh"},
                                             {"bash", "-i", "script.sh"},
                                             {"fish", "--command=x"},
                                             {"bash", "--rcfile", "f", "script"}}) {
    EXPECT_TRUE(busy(arguments)) << arguments.back();
  }
}

TEST_F(BusyDetector, OptionsOfAnInteractiveShellAreIdle) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"bash"},
                                             {"-bash"},
                                             {"bash", "-il"},
                                             {"bash", "--rcfile", "f"},
                                             {"zsh", "-o", "vi"},
                                             {"bash", "+O", "extglob"},
                                             {"fish", "-C", "x"},
                                             {"bash", "--norc", "--noprofile"},
                                             {"bash", "+x"}}) {
    EXPECT_FALSE(busy(arguments)) << arguments.size();
  }
}

TEST_F(BusyDetector, AProcessThatCannotBeSeenIsBusy) {
  processes_.states.clear();
  EXPECT_TRUE(busy());
}

TEST(SystemProcessTable, SeesThisProcess) {
  const auto table = systemProcessTable();
  const auto state = table->state(getpid());
  ASSERT_TRUE(state.has_value());
  EXPECT_EQ(state->group, getpgrp());
  EXPECT_TRUE(std::string("TmuxUnitTests").starts_with(state->name)) << state->name;
  EXPECT_FALSE(table->arguments(getpid()).empty());
  EXPECT_FALSE(table->state(0x3fffffff).has_value());
  EXPECT_TRUE(table->arguments(0x3fffffff).empty());
  EXPECT_FALSE(table->terminalMode("/nowhere").has_value());
  EXPECT_FALSE(table->terminalMode("/dev/null").has_value());
}

TEST(SystemProcessTable, SeesNoProcessThatHasEndedAndWaitsForItsParent) {
  const pid_t ended = ::fork();
  if (ended == 0) ::_exit(0);
  siginfo_t information{};
  ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(ended), &information, WEXITED | WNOWAIT), 0);
  EXPECT_FALSE(systemProcessTable()->state(ended).has_value());
  EXPECT_TRUE(systemProcessTable()->hasEnded(ended));
  EXPECT_EQ(::waitpid(ended, nullptr, 0), ended);
  EXPECT_TRUE(systemProcessTable()->hasEnded(ended));
}

TEST(SystemProcessTable, TakesNoProcessForEndedThatItCannotLookAt) {
  const auto table = systemProcessTable();
  EXPECT_FALSE(table->hasEnded(getpid()));
  rlimit limit{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit none{.rlim_cur = 0, .rlim_max = limit.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  const bool ended = table->hasEnded(getpid());
  ::setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_FALSE(ended);
}

}  // namespace
}  // namespace velmora
