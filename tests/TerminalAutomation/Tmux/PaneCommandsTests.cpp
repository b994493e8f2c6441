#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"

namespace velmora {
namespace {

using testing::samplePane;

const std::string samePane =
    "#{&&:#{==:#{pane_pid},1003},#{&&:#{==:#{pane_tty},/dev/pts/3},#{&&:#{==:#{window_id},@2},"
    "#{&&:#{==:#{start_time},1700000000},#{==:#{pid},100}}}}}";
const std::string guard = "#{?pane_dead,0,#{?pane_input_off,0," + samePane + "}}";

TEST(PaneCommands, TypesTextThenAReturnUnderTheGuard) {
  const PaneCommand command = typeText(samplePane(3, 2), "text;", "b");
  EXPECT_EQ(command.standardInput, "text;");
  EXPECT_EQ(command.arguments,
            (std::vector<std::string>{
                "load-buffer", "-b", "b", "-", ";", "set-buffer", "-b", "br", "\r", ";", "if-shell", "-F",
                "-t", "%3", guard,
                "copy-mode -q -t %3 ; paste-buffer -d -r -p -b b -t %3 ; paste-buffer -d -r -b br -t %3",
                "delete-buffer -b b ; delete-buffer -b br ; display-message -p STALE"}));
}

TEST(PaneCommands, NeverPutsTheTextIntoTheArguments) {
  for (const PaneCommand& command :
       {typeText(samplePane(3, 2), "secret", "b"), typeText(samplePane(3, 2), "secret\033[201~", "b")}) {
    for (const std::string& argument : command.arguments) {
      EXPECT_EQ(argument.find("secret"), std::string::npos) << argument;
    }
  }
}

TEST(PaneCommands, TypesEmptyTextAsTheReturnAlone) {
  const PaneCommand command = typeText(samplePane(3, 2), "", "b");
  EXPECT_EQ(command.standardInput, "\r");
  EXPECT_EQ(command.arguments.front(), "load-buffer");
  EXPECT_EQ(command.arguments[2], "br");
  EXPECT_EQ(command.arguments[command.arguments.size() - 2],
            "copy-mode -q -t %3 ; paste-buffer -d -r -b br -t %3");
}

TEST(PaneCommands, AsksNewServersToLeaveControlCharactersAlone) {
  PaneRow pane = samplePane(3, 2);
  const auto paste = [&pane] {
    const PaneCommand command = typeText(pane, "x", "b");
    return command.arguments[command.arguments.size() - 2];
  };
  EXPECT_EQ(paste().find(" -S"), std::string::npos);
  for (const char* version : {"3.7", "3.7c", "next-3.8", "master"}) {
    pane.version = version;
    EXPECT_NE(paste().find("paste-buffer -d -r -S -p -b b "), std::string::npos) << paste();
    EXPECT_NE(paste().find("paste-buffer -d -r -S -b br "), std::string::npos) << paste();
  }
}

TEST(PaneCommands, PressesKeysByNameBehindTheStandardInput) {
  const PaneCommand command = pressKey(samplePane(3, 2), TerminalKey::pageDown, 50, "b");
  EXPECT_EQ(command.standardInput, "x");
  EXPECT_EQ(command.arguments,
            (std::vector<std::string>{"load-buffer", "-b", "b", "-", ";", "if-shell", "-F", "-t", "%3",
                                      "#{?pane_synchronized,0," + guard + "}",
                                      "copy-mode -q -t %3 ; delete-buffer -b b ; send-keys -N 50 -t %3 NPage",
                                      "delete-buffer -b b ; display-message -p STALE"}));
}

TEST(PaneCommands, PastesKeysIntoSynchronizedPanes) {
  PaneRow pane = samplePane(3, 2);
  pane.synchronized = true;
  EXPECT_EQ(pressKey(pane, TerminalKey::upArrow, 2, "b").standardInput, "\033[A\033[A");
  pane.applicationCursor = true;
  const PaneCommand command = pressKey(pane, TerminalKey::upArrow, 1, "b");
  EXPECT_EQ(command.standardInput, "\033OA");
  EXPECT_EQ(command.arguments[command.arguments.size() - 2],
            "copy-mode -q -t %3 ; paste-buffer -d -r -b b -t %3");
}

TEST(PaneCommands, ReadingSaysWhetherItIsStillTheSamePane) {
  const std::string verdict = "#{?" + samePane + ",PANE,STALE}";
  const std::vector<std::string> expected{"display-message", "-p", "-t", "%3", verdict, ";",
                                          "capture-pane",    "-p", "-J", "-t", "%3"};
  EXPECT_EQ(readText(samplePane(3, 2), OutputSource::visible).arguments, expected);
  auto history = expected;
  history.insert(history.begin() + 9, {"-S", "-"});
  EXPECT_EQ(readText(samplePane(3, 2), OutputSource::history).arguments, history);
}

}  // namespace
}  // namespace velmora
