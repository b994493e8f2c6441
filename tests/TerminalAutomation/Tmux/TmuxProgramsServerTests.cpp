// Programs in the foreground, with input to busy panes allowed: what arrives is what was meant.
#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::eventually;
using testing::structuredError;
using testing::writeFile;

class TmuxPrograms : public testing::PrivateTmux {
 protected:
  /// A pane that runs `command` and shows `sign` when it is ready.
  TerminalTabSnapshot run(const std::string& command, const std::string& sign) {
    startServer({command});
    auto tab = onlyTab();
    EXPECT_TRUE(shows(tab, sign)) << visibleText(tab);
    return tab;
  }
  bool shows(const TerminalTabSnapshot& tab, const std::string& sign) {
    return eventually([&] { return visibleText(tab).find(sign) != std::string::npos; });
  }
  std::string file() const { return (directory_ / "file").string(); }
};

TEST_F(TmuxPrograms, NanoTakesLinesAndControlCharacters) {
  const auto tab = run("exec nano -I " + file(), "nano");
  sendTo(tab, "first line");
  sendTo(tab, "second line");
  ASSERT_TRUE(shows(tab, "second line"));
  sendTo(tab, "\x0f");  // writes; the Return accepts the name
  EXPECT_TRUE(eventually([&] { return contentOf(file()).starts_with("first line\nsecond line\n"); }));
}

TEST_F(TmuxPrograms, PythonRunsALineAndABlock) {
  const auto tab = run("exec python3 -q", ">>>");
  sendTo(tab, "total = 0");
  sendTo(tab, "for number in range(5):\n    total += number\n");
  sendTo(tab, "_ = open('" + file() + "', 'w').write(str(total))");
  EXPECT_TRUE(eventually([&] { return contentOf(file()) == "10"; })) << visibleText(tab);
}

TEST_F(TmuxPrograms, LessSearchesAndTurnsPages) {
  std::string text;
  for (int line = 0; line < 500; ++line) text += "line " + std::to_string(line) + "\n";
  writeFile(directory_ / "file", text);
  const auto tab = run("exec less " + file(), "line 20");
  sendTo(tab, "/line 400");
  ASSERT_TRUE(shows(tab, "line 401"));
  executor().send(TerminalKey::pageDown, 1, tab.tty, tab.windowId, true).get();
  EXPECT_TRUE(shows(tab, "line 440"));
}

TEST_F(TmuxPrograms, AReadTakesALineAsItIs) {
  const auto tab = run(
      "bash -c 'echo ready; read -r answer; printf %s \"$answer\" > " + file() + "; sleep 1000'", "ready");
  const std::string words = "it's \\ \"quoted\"; $HOME `x` 한국어";
  sendTo(tab, words);
  EXPECT_TRUE(eventually([&] { return contentOf(file()) == words; })) << contentOf(file());
}

TEST_F(TmuxPrograms, ATerminalThatCollectsLinesTakesTheLongestWhole) {
  const auto tab = run("echo ready; exec cat > " + file(), "ready");
  const std::string longest(4'095, 'x');
  EXPECT_EQ(structuredError([&] { sendTo(tab, longest + "x"); }).code, ErrorCode::invalidArgument);
  sendTo(tab, longest);
  sendTo(tab, "next");
  EXPECT_TRUE(eventually([&] { return contentOf(file()) == longest + "\nnext\n"; }))
      << contentOf(file()).size();
}

TEST_F(TmuxPrograms, BuffersOfABridgeThatWasKilledAreRemoved) {
  startServer();
  const std::string name = "velmora-01234567-89AB-4CDE-8F01-23456789ABCD-7";
  for (const std::string& buffer :
       {name, name + "r", std::string("velmora-notes"), std::string("mine"), name + "\n"}) {
    tmux({"set-buffer", "-b", buffer, "text"});
  }
  EXPECT_EQ(tabs().size(), 1u);
  EXPECT_NE(tmux({"list-buffers"}).find(name), std::string::npos) << "they may be another bridge's";
  executor_.reset();
  TmuxOptions later = options();
  later.now = [] { return Date::fromUnixSeconds(Date::now().unixSeconds() + 90); };
  executor_ = makeTmuxTerminal(later);
  EXPECT_EQ(tabs().size(), 1u);
  const std::string left = tmux({"list-buffers", "-F", "#{buffer_name}"});
  EXPECT_EQ(left.find(name + "r"), std::string::npos) << left;
  EXPECT_NE(left.find("velmora-notes"), std::string::npos) << left;
  EXPECT_NE(left.find("mine"), std::string::npos) << left;
}

}  // namespace
}  // namespace velmora
