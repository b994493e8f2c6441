#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/Direct/DirectCommands.h"
#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"

namespace velmora {
namespace {

using testing::samplePane;

TEST(DirectCommands, TakesWhatTheAdapterAsks) {
  EXPECT_TRUE(mayGoDirectly(
      {"list-panes", "-a", "-F", paneRowFormat(), ";", "list-clients", "-F", clientRowFormat()}));
  for (const PaneCommand& command :
       {typeText(samplePane(1, 1), "ls", "b"), typeText(samplePane(1, 1), "", "b"),
        pressKey(samplePane(1, 1), TerminalKey::tab, 2, "b"),
        readText(samplePane(1, 1), OutputSource::history), readScreen(samplePane(1, 1))}) {
    EXPECT_TRUE(mayGoDirectly(command.arguments)) << command.arguments.front();
  }
  EXPECT_TRUE(mayGoDirectly({"select-window", "-t", "$1:@2", ";", "select-pane", "-t", "%3"}));
  EXPECT_TRUE(mayGoDirectly({"switch-client", "-c", "/dev/pts/1", "-t", "$1:@2.%3"}));
  EXPECT_TRUE(mayGoDirectly({"show-options", "-gqv", "destroy-unattached"}));
}

TEST(DirectCommands, LeavesToTheProgramWhatMayStartAServerOrOpenAFile) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"-V"},
                                             {"-f", "/dev/null", "list-panes"},
                                             {"new-session", "-d"},
                                             {"new", "-d"},
                                             {"start-server"},
                                             {"attach-session"},
                                             {"load-buffer", "-b", "b", "/etc/passwd"},
                                             {"load-buffer"},
                                             {"save-buffer", "/tmp/x"},
                                             {"source-file", "/tmp/x"},
                                             {"run-shell", "x"},
                                             {"kill-server"}}) {
    EXPECT_FALSE(mayGoDirectly(arguments)) << (arguments.empty() ? "nothing" : arguments.front());
  }
}

TEST(DirectCommands, LooksAtEveryCommandOfAList) {
  EXPECT_FALSE(mayGoDirectly({"list-panes", ";", "new-session", "-d"}));
  EXPECT_FALSE(mayGoDirectly({"list-panes", ";"}));
  EXPECT_FALSE(mayGoDirectly({";", "list-panes"}));
  EXPECT_FALSE(mayGoDirectly({"list-panes", ";", "load-buffer", "/etc/passwd", ";", "set-buffer", "-"}));
  EXPECT_TRUE(mayGoDirectly({"load-buffer", "-", ";", "set-buffer", "x"}));
}

TEST(DirectCommands, SeesTheEndOfACommandWithinAnArgument) {
  EXPECT_FALSE(mayGoDirectly({"list-panes;", "new-session", "-d"}));
  EXPECT_TRUE(mayGoDirectly({"display-message", "-p", "x\\;"}));
  EXPECT_TRUE(mayGoDirectly({"display-message", "-p", "a;b"}));
}

TEST(DirectCommands, TakesNothingThatAServerWouldNot) {
  EXPECT_TRUE(mayGoDirectly({"display-message", "-p", std::string(16'000, 'x')}));
  EXPECT_FALSE(mayGoDirectly({"display-message", "-p", std::string(17'000, 'x')}));
}

}  // namespace
}  // namespace velmora
