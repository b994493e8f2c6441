#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/BusyDetector.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"

namespace velmora {
namespace {

constexpr pid_t shell = 10;
const std::string tty = "/dev/pts/1";

class BusyDetector : public ::testing::Test {
 protected:
  /// An idle bash with these arguments.
  bool busy(const std::vector<std::string>& arguments = {"-bash"}) {
    processes_.arguments[shell] = arguments;
    return paneIsBusy(testing::ScriptedProcesses(processes_), shell, tty);
  }

  testing::ScriptedProcesses::State processes_{
      .states = {{shell, {.name = "bash", .group = shell, .foregroundGroup = shell}}},
      .arguments = {},
      .modes = {{tty, {.editsLine = true}}}};
};

TEST_F(BusyDetector, AShellThatEditsALineIsIdle) { EXPECT_FALSE(busy()); }

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

TEST_F(BusyDetector, AShellWithoutALineEditorIsBusyOnlyOnTheProcessor) {
  processes_.modes[tty] = {.collectsLines = true};
  for (const char* name : {"sh", "dash", "ash"}) {
    processes_.states[shell].name = name;
    processes_.states[shell].running = false;
    EXPECT_FALSE(busy({"-sh"})) << name;
    processes_.states[shell].running = true;
    EXPECT_TRUE(busy({"-sh"})) << name;
  }
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

}  // namespace
}  // namespace velmora
