#include "TerminalAutomation/Tmux/PaneCommands.h"
#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::eventually;
using testing::structuredError;

class TmuxDeliveryOnServer : public testing::PrivateTmux {
 protected:
  TerminalTabSnapshot startRecorder(const std::string& modes = "-") {
    startServer(recorder("recording", modes));
    waitForRecorder();
    return onlyTab();
  }

  std::int64_t bufferCount() {
    const std::string buffers = tmux({"list-buffers"});
    return std::count(buffers.begin(), buffers.end(), '\n') + (buffers.empty() ? 0 : 1);
  }
};

TEST_F(TmuxDeliveryOnServer, TypesAnyTextByteForByteAndSubmitsItOnce) {
  const auto tab = startRecorder();
  std::string controls;
  for (int byte = 1; byte < 32; ++byte) controls += static_cast<char>(byte);
  controls += '\177';
  std::string expected;
  for (const std::string& text :
       {std::string("echo hello"), std::string("안녕하세요 세계"),
        std::string("👩‍👩‍👧‍👦 é"), std::string("'\"`$(x)\\\\\\ #{pid}"),
        std::string("ends with ;"), std::string("ends with \\;"), std::string(";"), std::string("--leading"),
        std::string("-"), std::string("two\nlines\r\nand\ttabs\n"), std::string(" blank "), controls,
        std::string("\033[201~ ends a block")}) {
    sendTo(tab, text);
    expected += text + "\r";
    expectRecorded(expected);
  }
  EXPECT_EQ(bufferCount(), 0);
}

TEST_F(TmuxDeliveryOnServer, ALineReachesAnEditorAsItsCommand) {
  startServer({"exec vi -u NONE " + (directory_ / "note").string()});
  const auto tab = onlyTab();
  ASSERT_TRUE(eventually([&] { return visibleText(tab).find("note") != std::string::npos; }));
  sendTo(tab, ":s/^/kept/ | x");
  EXPECT_TRUE(eventually([&] { return contentOf(directory_ / "note") == "kept\n"; })) << visibleText(tab);
}

TEST_F(TmuxDeliveryOnServer, TypesNoSecretWhateverIsAllowed) {
  startServer({"exec bash"});
  const auto tab = onlyTab();
  ASSERT_TRUE(eventually([&] { return !isBusy(tab.tty); }));
  sendTo(tab, "read -s secret; echo \"it was <$secret>\"");
  ASSERT_TRUE(eventually([&] { return isBusy(tab.tty); }));
  for (const bool allowBusy : {false, true}) {
    const auto error =
        structuredError([&] { executor().send("hunter2", tab.tty, tab.windowId, allowBusy).get(); });
    EXPECT_EQ(error.code, ErrorCode::sessionBusy);
  }
  const auto key = structuredError(
      [&] { executor().send(TerminalKey::return_, 1, tab.tty, tab.windowId, /*allowBusy=*/true).get(); });
  EXPECT_EQ(key.message, "A program is asking for a secret in the tmux pane.");
  tmux({"send-keys", "-t", "%0", "the user's", "Enter"});
  EXPECT_TRUE(eventually([&] { return visibleText(tab).find("it was <the user's>") != std::string::npos; }))
      << visibleText(tab);
}

TEST_F(TmuxDeliveryOnServer, ALineThatTheTerminalWouldCutIsRefusedWhole) {
  startServer({"PS1=ready: exec dash"});
  const auto tab = onlyTab();
  ASSERT_TRUE(eventually([&] { return visibleText(tab).find("ready:") != std::string::npos; }));
  const std::string tooLong = ": " + std::string(4'094, 'x');
  const auto error = structuredError([&] { sendTo(tab, "echo short\n" + tooLong); });
  EXPECT_EQ(error.code, ErrorCode::invalidArgument);
  EXPECT_NE(error.message.find("4095 bytes"), std::string::npos) << error.message;
  sendTo(tab, "echo do''ne");
  ASSERT_TRUE(eventually([&] { return visibleText(tab).find("\ndone") != std::string::npos; }))
      << visibleText(tab);
  EXPECT_EQ(visibleText(tab).find("\nshort"), std::string::npos) << "nothing of it was typed";
}

TEST_F(TmuxDeliveryOnServer, TypesTheLongestText) {
  const auto tab = startRecorder();
  std::string text;
  while (text.size() < 65'530) text += "한글 text; ";
  text.resize(65'536, 'x');
  sendTo(tab, text);
  expectRecorded(text + "\r");
}

TEST_F(TmuxDeliveryOnServer, TypesEmptyTextAsAReturn) {
  const auto tab = startRecorder();
  sendTo(tab, "");
  sendTo(tab, "");
  expectRecorded("\r\r");
}

TEST_F(TmuxDeliveryOnServer, TypesOneBlockWhenTheProgramAsksForIt) {
  const auto tab = startRecorder("b");
  sendTo(tab, "two\nlines");
  expectRecorded("\033[200~two\nlines\033[201~\r");
}

TEST_F(TmuxDeliveryOnServer, TypesATextThatWouldEndTheBlockWithoutABlock) {
  const auto tab = startRecorder("b");
  sendTo(tab, "a\033[201~b");
  expectRecorded("a\033[201~b\r");
}

TEST_F(TmuxDeliveryOnServer, RefusesTextWithNul) {
  const auto tab = startRecorder();
  const auto error = structuredError([&] { sendTo(tab, std::string("a\0b", 3)); });
  EXPECT_EQ(error.code, ErrorCode::invalidArgument);
  sendTo(tab, "after");
  expectRecorded("after\r");
}

TEST_F(TmuxDeliveryOnServer, ReachesTheProgramInCopyMode) {
  const auto tab = startRecorder("b");
  tmux({"copy-mode", "-t", "%0"});
  sendTo(tab, "two\nlines");
  expectRecorded("\033[200~two\nlines\033[201~\r");
}

TEST_F(TmuxDeliveryOnServer, ReachesTheProgramUnderAChooser) {
  const auto tab = startRecorder();
  tmux({"choose-tree", "-t", "%0"});
  sendTo(tab, "text");
  tmux({"clock-mode", "-t", "%0"});
  executor().send(TerminalKey::upArrow, 2, tab.tty, tab.windowId, true).get();
  expectRecorded("text\r\033[A\033[A");
}

TEST_F(TmuxDeliveryOnServer, ReachesOnePaneOfSynchronizedOnes) {
  const auto tab = startRecorder();
  auto second = recorder("second", "a");
  second.insert(second.begin(), {"split-window", "-d"});
  tmux(second);
  waitForRecorder("second");
  tmux({"set-option", "-w", "synchronize-panes", "on"});
  tabs();
  sendTo(tab, "text");
  executor().send(TerminalKey::leftArrow, 3, tab.tty, tab.windowId, true).get();
  expectRecorded("text\r\033[D\033[D\033[D");
  const auto other = tabOf("%1");
  executor().send(TerminalKey::leftArrow, 2, other.tty, other.windowId, true).get();
  expectRecorded("\033OD\033OD", "second");
  EXPECT_EQ(bufferCount(), 0);
}

TEST_F(TmuxDeliveryOnServer, PressesEveryKeyOnceAndFiftyTimes) {
  const auto tab = startRecorder();
  const std::vector<std::pair<TerminalKey, std::string>> keys{
      {TerminalKey::upArrow, "\033[A"},   {TerminalKey::downArrow, "\033[B"},
      {TerminalKey::leftArrow, "\033[D"}, {TerminalKey::rightArrow, "\033[C"},
      {TerminalKey::return_, "\r"},       {TerminalKey::escape, "\033"},
      {TerminalKey::tab, "\t"},           {TerminalKey::delete_, "\177"},
      {TerminalKey::home, "\033[1~"},     {TerminalKey::forwardDelete, "\033[3~"},
      {TerminalKey::end, "\033[4~"},      {TerminalKey::pageUp, "\033[5~"},
      {TerminalKey::pageDown, "\033[6~"}};
  ASSERT_EQ(keys.size(), 13u);
  std::string expected;
  for (const bool synchronized : {false, true}) {
    tmux({"set-option", "-w", "synchronize-panes", synchronized ? "on" : "off"});
    tabs();
    for (const auto& [key, bytes] : keys) {
      for (const int count : {1, 50}) {
        executor().send(key, count, tab.tty, tab.windowId, true).get();
        for (int i = 0; i < count; ++i) expected += bytes;
      }
      expectRecorded(expected);
    }
  }
  for (const int count : {0, 51, -1}) {
    EXPECT_EQ(structuredError([&] {
                executor().send(TerminalKey::tab, count, tab.tty, tab.windowId, true).get();
              }).code,
              ErrorCode::invalidArgument);
  }
  EXPECT_EQ(bufferCount(), 0);
}

TEST_F(TmuxDeliveryOnServer, PressesApplicationCursorKeysWhereTheProgramWantsThem) {
  const auto tab = startRecorder("a");
  executor().send(TerminalKey::upArrow, 1, tab.tty, tab.windowId, true).get();
  expectRecorded("\033OA");
}

TEST_F(TmuxDeliveryOnServer, RefusesADeadPaneAndTheServerLives) {
  startServer();
  tmux({"set-option", "-g", "remain-on-exit", "on"});
  tmux({"split-window", "-d", "exec true"});
  ASSERT_TRUE(eventually([&] { return tmux({"display-message", "-p", "-t", "%1", "#{pane_dead}"}) == "1"; }));
  const auto tab = tabOf("%1");
  EXPECT_FALSE(tab.busy);
  EXPECT_EQ(structuredError([&] { sendTo(tab, "x"); }).code, ErrorCode::sessionStale);
  EXPECT_EQ(
      structuredError([&] { executor().send(TerminalKey::tab, 1, tab.tty, tab.windowId, true).get(); }).code,
      ErrorCode::sessionStale);
  EXPECT_EQ(tabs().size(), 2u);
}

TEST_F(TmuxDeliveryOnServer, TheServersOwnGuardRefusesAPaneThatDiedAfterTheLookUp) {
  startServer();
  tmux({"set-option", "-g", "remain-on-exit", "on"});
  tmux({"split-window", "-d", "exec true"});
  ASSERT_TRUE(eventually([&] { return tmux({"display-message", "-p", "-t", "%1", "#{pane_dead}"}) == "1"; }));
  auto listing = parseListing(ask(paneListing()).output);
  ASSERT_TRUE(listing.has_value());
  for (PaneRow row : listing->panes) {
    if (row.pane != 1) continue;
    for (PaneCommand command :
         {typeText(row, "x", "b"), typeText(row, "", "b"), pressKey(row, TerminalKey::tab, 1, "b")}) {
      const TmuxAnswer answer =
          transport_->run({.arguments = command.arguments,
                           .standardInput = command.standardInput,
                           .deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5)});
      EXPECT_EQ(answer.output, "STALE\n");
      EXPECT_EQ(answer.errorOutput, "");
    }
  }
  EXPECT_EQ(bufferCount(), 0);
  EXPECT_EQ(tabs().size(), 2u);
}

TEST_F(TmuxDeliveryOnServer, RefusesAPaneWhoseInputIsOff) {
  const auto tab = startRecorder();
  tmux({"select-pane", "-d", "-t", "%0"});
  tabs();
  EXPECT_EQ(structuredError([&] { sendTo(tab, "x"); }).code, ErrorCode::sessionNotAllowed);
  EXPECT_EQ(
      structuredError([&] { executor().send(TerminalKey::tab, 1, tab.tty, tab.windowId, true).get(); }).code,
      ErrorCode::sessionNotAllowed);
  tmux({"select-pane", "-e", "-t", "%0"});
  tabs();
  sendTo(tab, "on");
  expectRecorded("on\r");
}

TEST_F(TmuxDeliveryOnServer, WhatChangesAfterTheListingIsRefusedByTheServersOwnGuard) {
  const auto tab = startRecorder();
  tmux({"select-pane", "-d", "-t", "%0"});
  EXPECT_EQ(structuredError([&] { sendTo(tab, "x"); }).code, ErrorCode::sessionStale);
  tmux({"select-pane", "-e", "-t", "%0"});
  tmux({"split-window", "-d"});
  tmux({"set-option", "-w", "synchronize-panes", "on"});
  EXPECT_EQ(
      structuredError([&] { executor().send(TerminalKey::tab, 1, tab.tty, tab.windowId, true).get(); }).code,
      ErrorCode::sessionStale)
      << "the key would reach the other pane too";
  sendTo(tab, "on");
  expectRecorded("on\r");
}

TEST_F(TmuxDeliveryOnServer, RefusesABusyPaneUnlessAllowed) {
  const auto tab = startRecorder();
  const auto error = structuredError([&] { executor().send("x", tab.tty, tab.windowId).get(); });
  EXPECT_EQ(error.code, ErrorCode::sessionBusy);
  EXPECT_TRUE(error.retryable);
  EXPECT_EQ(structuredError([&] { executor().send(TerminalKey::tab, 1, tab.tty, tab.windowId).get(); }).code,
            ErrorCode::sessionBusy);
  sendTo(tab, "allowed");
  expectRecorded("allowed\r");
}

TEST_F(TmuxDeliveryOnServer, RunsALongCommandInABash) {
  startServer();
  const auto tab = onlyTab();
  // The shell may take input a moment before its prompt is drawn, and a prompt that appears meanwhile is
  // refused.
  ASSERT_TRUE(eventually([&] { return tmux({"display-message", "-p", "#{cursor_x}"}) != "0"; }));
  ASSERT_TRUE(eventually([&] { return !isBusy(tab.tty); }));
  const std::string payload(60'000, 'p');
  executor()
      .send("cat > " + recording().string() + " <<'END'\n" + payload + "\n\tx\nEND", tab.tty, tab.windowId)
      .get();
  expectRecorded(payload + "\n\tx\n");
}

}  // namespace
}  // namespace velmora
