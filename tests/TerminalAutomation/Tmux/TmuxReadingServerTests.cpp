#include <gmock/gmock.h>
#include <sys/stat.h>

#include "BridgeModels/Text.h"
#include "TerminalAutomation/Tmux/TmuxRows.h"
#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora {
namespace {

using ::testing::AnyOf;
using testing::contentOf;
using testing::eventually;
using testing::modeOf;
using ::testing::StartsWith;
using testing::structuredError;
using testing::writeFile;

class TmuxReading : public testing::PrivateTmux {
 protected:
  /// A pane that shows the file's bytes and then stays.
  TerminalTabSnapshot show(const std::string& content, const std::vector<std::string>& before = {}) {
    writeFile(directory_ / "content", content);
    const std::vector<std::string> program{"sh", "-c",
                                           "cat " + (directory_ / "content").string() + "; touch " +
                                               (directory_ / "shown").string() + "; exec sleep 1000"};
    if (before.empty()) {
      startServer(program);
    } else {
      startServer();
      tmux(before);
      auto arguments = program;
      arguments.insert(arguments.begin(), {"respawn-pane", "-k", "-t", "%0"});
      tmux(arguments);
    }
    EXPECT_TRUE(
        eventually([&] { return std::filesystem::exists(directory_ / "shown"); }, std::chrono::seconds(60)));
    return onlyTab();
  }

  TerminalOutput read(const TerminalTabSnapshot& tab, OutputSource source, std::int64_t maximum = 50'000) {
    return executor().readOutput(source, maximum, tab.tty, tab.windowId).get();
  }
};

TEST_F(TmuxReading, GivesTheScreenWithoutBlanksAtTheEnds) {
  const auto tab = show("one   \n\n  two\t\n   \n");
  ASSERT_TRUE(eventually([&] { return read(tab, OutputSource::visible).text == "one\n\n  two"; }))
      << read(tab, OutputSource::visible).text;
  const TerminalOutput output = read(tab, OutputSource::visible);
  EXPECT_EQ(output.originalCharacterCount, 10);
  EXPECT_EQ(output.source, OutputSource::visible);
}

TEST_F(TmuxReading, GivesAnEmptyScreen) {
  const auto tab = show("");
  const TerminalOutput output = read(tab, OutputSource::visible);
  EXPECT_EQ(output.text, "");
  EXPECT_EQ(output.originalCharacterCount, 0);
}

TEST_F(TmuxReading, JoinsLinesThatTheScreenWrapped) {
  const std::string longLine = std::string(250, 'x') + " end";
  const auto tab = show(longLine + "\nnext\n");
  ASSERT_TRUE(eventually([&] { return read(tab, OutputSource::visible).text == longLine + "\nnext"; }))
      << read(tab, OutputSource::visible).text;
}

TEST_F(TmuxReading, GivesTheColoursThatBeganAboveTheScreen) {
  std::string content = "plain\n\033[31mred\n";
  for (int row = 0; row < 30; ++row) content += "still red\n";
  const auto tab = show(content + "last");
  ASSERT_TRUE(eventually([&] { return read(tab, OutputSource::visible).text.ends_with("last"); }));
  ASSERT_EQ(read(tab, OutputSource::visible).text.find("plain"), std::string::npos);
  const auto found =
      executor().readAs({.maxCharacters = 50'000, .format = OutputFormat::ansi}, tab.tty, tab.windowId).get();
  // tmux 3.5a ends colours in the row in which they stand.
  EXPECT_THAT(found.output.text,
              AnyOf(StartsWith("\033[31mstill red\n"), StartsWith("\033[31mstill red\033[39m\n")));
}

TEST_F(TmuxReading, CountsCharactersAsPeopleDoAndKeepsTheEnd) {
  const auto tab = show("한글 e\xcc\x81 🇰🇷 끝\n");
  ASSERT_TRUE(eventually([&] { return !read(tab, OutputSource::visible).text.empty(); }));
  const TerminalOutput output = read(tab, OutputSource::visible, 3);
  EXPECT_EQ(output.text, "🇰🇷 끝");
  EXPECT_EQ(output.originalCharacterCount, 8);
}

TEST_F(TmuxReading, OneCharacterWithoutEndIsCut) {
  std::string content = "a";
  for (int i = 0; i < 20'000; ++i) content += "\xe0\xa4\x83";
  const auto tab = show(content + "\n");
  ASSERT_TRUE(eventually([&] { return read(tab, OutputSource::history).text.size() > 50'000; }));
  const TerminalOutput output = read(tab, OutputSource::history, 40);
  EXPECT_LE(output.text.size(), 1'000u);
  EXPECT_GT(output.originalCharacterCount, characterCount(output.text));
}

TEST_F(TmuxReading, TitlesOfAnyLengthMakeAShortListing) {
  startServer({"sh", "-c", "printf '\\033]2;%0300000d\\007' 7; exec sleep 1000"});
  ASSERT_TRUE(eventually([&] { return onlyTab().title.size() > 100; }));
  EXPECT_LT(onlyTab().title.size(), 600u);
  TmuxAnswer answer = ask(paneListing());
  EXPECT_LT(answer.output.size(), 2'000u) << "tmux itself cuts them";
}

TEST_F(TmuxReading, GivesTheHistoryAboveTheScreen) {
  std::string content;
  for (int i = 1; i <= 500; ++i) content += "line " + std::to_string(i) + "\n";
  const auto tab = show(content);
  content.pop_back();
  ASSERT_TRUE(eventually([&] { return read(tab, OutputSource::history).text == content; }));
  const std::string visible = read(tab, OutputSource::visible).text;
  EXPECT_LT(visible.size(), content.size() / 2);
  EXPECT_TRUE(content.ends_with(visible));
}

TEST_F(TmuxReading, GivesTheAlternateScreenWhileAProgramUsesIt) {
  const auto tab = show("first\n\033[?1049h\033[Halternate\n");
  ASSERT_TRUE(eventually([&] { return read(tab, OutputSource::visible).text == "alternate"; }));
  EXPECT_TRUE(read(tab, OutputSource::history).text.ends_with("alternate"));
}

TEST_F(TmuxReading, IsNotFooledByATextThatLooksLikeTheGuardsAnswer) {
  const auto tab = show("STALE\n");
  ASSERT_TRUE(eventually([&] { return read(tab, OutputSource::visible).text == "STALE"; }));
}

TEST_F(TmuxReading, ReadsTheScreenBehindACopyMode) {
  std::string content;
  for (int i = 1; i <= 100; ++i) content += "line " + std::to_string(i) + "\n";
  const auto tab = show(content);
  ASSERT_TRUE(eventually([&] { return read(tab, OutputSource::visible).text.ends_with("line 100"); }));
  tmux({"copy-mode", "-t", "%0"});
  tmux({"send-keys", "-X", "-t", "%0", "history-top"});
  EXPECT_TRUE(read(tab, OutputSource::visible).text.ends_with("line 100"));
}

TEST_F(TmuxReading, ReadsTwoHundredThousandLines) {
  std::string content;
  for (int i = 1; i <= 200'000; ++i)
    content += "line " + std::to_string(i) + " of a long history 0123456789\n";
  startServer();
  tmux({"set-option", "-g", "history-limit", "300000"});
  endServer();
  makeFolder();
  writeFile(directory_ / "content", content);
  writeFile(directory_ / "configuration", "set -g history-limit 300000\n");
  tmux({"-f", (directory_ / "configuration").string(), "new-session", "-d", "-x", "100", "-y", "30",
        "cat " + (directory_ / "content").string() + "; exec sleep 1000"});
  const auto tab = onlyTab();
  content.pop_back();
  ASSERT_TRUE(eventually(
      [&] { return read(tab, OutputSource::visible).text.find("line 200000 ") != std::string::npos; },
      std::chrono::seconds(60)));
  const TerminalOutput output = read(tab, OutputSource::history, 12'000);
  EXPECT_EQ(output.originalCharacterCount, static_cast<std::int64_t>(content.size()));
  EXPECT_TRUE(output.text == content.substr(content.size() - 12'000));
}

TEST_F(TmuxReading, WritesAPictureForItsOwnerAlone) {
  const auto tab = show("\033[1;31mred 한글 🙂\033[0m ┌─┐\n");
  const TerminalScreenCapture capture = executor().captureScreen(tab.tty, tab.windowId).get();
  const std::filesystem::path path = capture.imagePath;
  EXPECT_EQ(path.parent_path(), directory_ / "temporary" / "Velmora");
  const std::string name = path.filename().string();
  ASSERT_EQ(name.size(), 9u + 36 + 4);
  EXPECT_EQ(Uuid::parse(name.substr(9, 36)).value().toString(), name.substr(9, 36));
  EXPECT_EQ(modeOf(path), 0600u);
  EXPECT_EQ(modeOf(path.parent_path()), 0700u);
  EXPECT_TRUE(contentOf(path).starts_with("\x89PNG\r\n\x1a\n"));
  EXPECT_NE(executor().captureScreen(tab.tty, tab.windowId).get().imagePath, capture.imagePath);
}

TEST_F(TmuxReading, HandsThePictureTheScreenAndTheCursor) {
  const auto tab = show("\033[32mgreen\033[0m\n$ ");
  executor_.reset();
  PaneScreen drawn;
  TmuxParts parts = TmuxParts::ofSystem(options());
  parts.drawPicture = [&drawn](const PaneScreen& screen) {
    drawn = screen;
    return std::string("picture");
  };
  executor_ = makeTmuxTerminal(options(), std::move(parts));
  onlyTab();
  ASSERT_TRUE(eventually([&] {
    executor().captureScreen(tab.tty, tab.windowId).get();
    return drawn.cursorColumn == 2;
  }));
  EXPECT_EQ(drawn.columns, 100);
  EXPECT_EQ(drawn.rows, 30);
  EXPECT_EQ(drawn.cursorRow, 1);
  EXPECT_TRUE(drawn.cursorVisible);
  EXPECT_TRUE(drawn.text.starts_with("\033[32mgreen")) << drawn.text;
}

TEST_F(TmuxReading, SaysWhyAPictureCannotBeWritten) {
  const auto tab = show("x");
  writeFile(directory_ / "temporary" / "Velmora", "in the way");
  const auto error = structuredError([&] { executor().captureScreen(tab.tty, tab.windowId).get(); });
  EXPECT_EQ(error.code, ErrorCode::screenCaptureUnavailable);
}

}  // namespace
}  // namespace velmora
