#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/PromptWatch.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"
#include "tests/support/FakeTime.h"

namespace velmora {
namespace {

using Line = PromptWatch::Line;
using testing::samplePane;

class PromptWatchTest : public ::testing::Test {
 protected:
  void see(bool idle = true) {
    const std::int64_t activity = std::max({lastKey_, lastAttach_, std::int64_t{1}});
    watch_.see({pane_, 1, 1, lastKey_, lastAttach_, activity}, idle, time_.now());
  }
  Line line() const { return watch_.line(pane_); }
  Line settle(const std::string& left) { return watch_.settle(pane_, {.left = left}); }
  void cursorAt(std::int64_t row, std::int64_t column) {
    pane_.cursorRow = row;
    pane_.cursorColumn = column;
  }
  void pressKey() { lastKey_ = static_cast<std::int64_t>(time_.now().unixSeconds()); }
  /// The prompt "$ " was seen empty in the first row.
  void seenEmpty() {
    cursorAt(0, 2);
    see();
  }

  testing::FakeTime time_;
  PaneRow pane_ = samplePane(3, 2);
  std::int64_t lastKey_ = 0;
  std::int64_t lastAttach_ = 0;
  PromptWatch watch_{time_.clock()};
};

TEST_F(PromptWatchTest, APromptThatIsSeenFirstIsEmptyUnlessAKeyWasPressedThere) {
  EXPECT_EQ(line(), Line::empty) << "never seen";
  seenEmpty();
  EXPECT_EQ(line(), Line::empty);
  pane_.pane = 4;
  pressKey();
  time_.advance(60);
  see();
  EXPECT_EQ(line(), Line::doubtful);
}

TEST_F(PromptWatchTest, AKeyHoldsTheLineForTenSeconds) {
  seenEmpty();
  time_.advance(20);
  pressKey();
  see();
  EXPECT_EQ(line(), Line::typedIn);
  time_.advance(9);
  EXPECT_EQ(line(), Line::typedIn);
  time_.advance(2);
  EXPECT_EQ(line(), Line::doubtful) << "the line may hold what was typed";
  EXPECT_EQ(settle("$ "), Line::empty);
  EXPECT_EQ(line(), Line::empty);
}

TEST_F(PromptWatchTest, AnAttachHoldsTheLineUntilItsSecondIsOver) {
  seenEmpty();
  time_.advance(20);
  watch_.touch(pane_);  // so that the cursor's place says nothing
  lastAttach_ = static_cast<std::int64_t>(time_.now().unixSeconds());
  see();
  EXPECT_EQ(line(), Line::typedIn) << "a key in that second looks like the attach";
  time_.advance(2);
  see();
  EXPECT_EQ(line(), Line::doubtful);
  EXPECT_EQ(settle("$ "), Line::empty);
  EXPECT_EQ(line(), Line::empty);
}

TEST_F(PromptWatchTest, AKeyFromTheFutureHoldsNothing) {
  seenEmpty();
  time_.advance(3'600);
  pressKey();
  time_.advance(-3'600);
  see();
  EXPECT_NE(line(), Line::typedIn);
}

TEST_F(PromptWatchTest, ACursorElsewhereIsADoubt) {
  seenEmpty();
  cursorAt(0, 7);
  see();
  EXPECT_EQ(line(), Line::doubtful);
  EXPECT_EQ(settle("$ echo "), Line::typedIn);
  EXPECT_EQ(line(), Line::doubtful) << "it is looked at each time";
  cursorAt(0, 2);
  see();
  EXPECT_EQ(line(), Line::empty) << "erased";
}

TEST_F(PromptWatchTest, KnowsTheRestOfAnUnfinishedCommand) {
  for (const char* const left : {"> ", "quote> ", "cmdsubst quote> ", "      "}) {
    seenEmpty();
    cursorAt(1, static_cast<std::int64_t>(std::string(left).size()));
    EXPECT_EQ(settle(left), Line::typedIn) << left;
  }
}

TEST_F(PromptWatchTest, KnowsWordsBehindThePrompt) {
  for (const char* const left : {"$ ls", "$ rm -rf /home/ann/", "$ rm x ", "$ echo \"", "$ cat |"}) {
    seenEmpty();
    cursorAt(5, static_cast<std::int64_t>(std::string(left).size()));
    EXPECT_EQ(settle(left), Line::typedIn) << left;
  }
  EXPECT_EQ(watch_.settle(pane_, {.left = "more ", .above = "$ echo "}), Line::typedIn);
  EXPECT_EQ(watch_.settle(pane_, {.left = "$ ", .above = "what a program said"}), Line::empty);
  EXPECT_EQ(watch_.settle(pane_, {.left = "$ ", .cursorInText = true}), Line::typedIn);
  EXPECT_EQ(watch_.settle(pane_, {.left = "$ ", .wrapped = true}), Line::typedIn);
}

TEST_F(PromptWatchTest, KnowsWordsBehindAPromptThatItNeverSawEmpty) {
  pane_.cursorColumn = 0;
  see();  // the shell had not shown its prompt yet
  cursorAt(0, 20);
  EXPECT_EQ(settle("ann@desk ~# echo x; "), Line::typedIn);
  EXPECT_EQ(settle("ann@desk ~# "), Line::empty);
}

TEST_F(PromptWatchTest, TakesAPromptThatChangedForOne) {
  pane_.cursorColumn = 12;
  see();  // ann@desk:~$
  for (const char* const left : {"ann@desk:~/src$ ", "ann@desk:/$ ", "(venv) ann@desk:~/src$ ", "$", ""}) {
    cursorAt(pane_.cursorRow + 1, static_cast<std::int64_t>(std::string(left).size()));
    EXPECT_EQ(settle(left), Line::empty) << left;
  }
}

TEST_F(PromptWatchTest, APromptOfAnOddFormIsKnownWhenItComesAgain) {
  seenEmpty();
  const std::string odd = "say> ";
  cursorAt(1, 5);
  EXPECT_EQ(settle(odd), Line::typedIn);
  EXPECT_EQ(settle(odd), Line::typedIn);
  cursorAt(2, 5);
  EXPECT_EQ(settle(odd), Line::empty);
  cursorAt(3, 5);
  EXPECT_EQ(settle(odd), Line::empty);
}

TEST_F(PromptWatchTest, WhatTheBridgeTypedIsNoDoubt) {
  seenEmpty();
  time_.advance(30);
  watch_.touch(pane_);
  EXPECT_FALSE(watch_.guard(pane_).cursorHolds) << "its echo may be on its way";
  cursorAt(4, 9);
  see();
  EXPECT_EQ(line(), Line::empty);
  time_.advance(3);
  see(/*idle=*/false);
  EXPECT_EQ(line(), Line::empty);
  see();
  EXPECT_EQ(line(), Line::empty);
  EXPECT_TRUE(watch_.guard(pane_).cursorHolds);
  cursorAt(4, 12);
  EXPECT_EQ(line(), Line::doubtful);
}

TEST_F(PromptWatchTest, AKeyAfterWhatTheBridgeTypedIsADoubt) {
  seenEmpty();
  time_.advance(30);
  watch_.touch(pane_);
  time_.advance(5);
  pressKey();
  time_.advance(15);
  see();
  EXPECT_EQ(line(), Line::doubtful);
}

TEST_F(PromptWatchTest, AnotherProgramInThePaneIsAnotherPrompt) {
  seenEmpty();
  pane_.process += 1;
  cursorAt(0, 40);
  EXPECT_EQ(line(), Line::empty);
  see();
  EXPECT_EQ(line(), Line::empty);
}

TEST_F(PromptWatchTest, ForgetsPanesThatAreGone) {
  seenEmpty();
  time_.advance(60);
  watch_.forgetBefore(time_.now());
  cursorAt(0, 9);
  see();
  EXPECT_EQ(line(), Line::empty) << "seen for the first time";
}

TEST(CursorLine, IsWhatStandsBeforeTheCursor) {
  PaneRow pane = samplePane(3, 2);
  pane.cursorRow = 1;
  pane.cursorColumn = 6;
  pane.historySize = 7;
  const std::string head = "\t6\t1\t7\t10\n";
  EXPECT_EQ(parseCursorLine(head + "above\n$ echo\n$ echo \n", pane), (CursorLine{.left = "$ echo"}));
  EXPECT_EQ(parseCursorLine(head + "above\n$ echo x\n$ echo x\n", pane), (CursorLine{.left = "$ echo"}));
  EXPECT_EQ(parseCursorLine(head + "above\n$ echoing\n$ echoing\n", pane),
            (CursorLine{.left = "$ echo", .cursorInText = true}));
  EXPECT_EQ(parseCursorLine(head + "above\n$\n$\n", pane), (CursorLine{.left = "$     "}));
  EXPECT_EQ(parseCursorLine(head + "x\nabove echo\n  echo\n", pane),
            (CursorLine{.left = "  echo", .wrapped = true}));
  EXPECT_EQ(parseCursorLine(head + "other\n1234567890\necho\n  echo\n", pane),
            (CursorLine{.left = "  echo", .above = "1234567890"}));
  EXPECT_EQ(parseCursorLine(head + "above\n한글 x\n한글 x\n", pane), (CursorLine{.left = "한글 x"}));
  EXPECT_EQ(parseCursorLine("\t7\t1\t7\t10\nabove\n$\n$\n", pane), std::nullopt) << "the cursor has moved";
}

}  // namespace
}  // namespace velmora
