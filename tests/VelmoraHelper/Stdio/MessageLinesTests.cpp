#include <gtest/gtest.h>

#include <vector>

#include "VelmoraHelper/Stdio/MessageLines.h"

namespace velmora {
namespace {

constexpr std::size_t maximum = 8;

// Each line that is there to be taken; "!" stands for one that was too long.
std::vector<std::string> taken(MessageLines& lines) {
  std::vector<std::string> texts;
  while (const auto line = lines.next()) texts.push_back(line->tooLong ? "!" : line->text);
  return texts;
}

std::vector<std::string> linesOf(std::string_view stream) {
  MessageLines lines(maximum);
  lines.feed(stream);
  lines.finish();
  return taken(lines);
}

using Texts = std::vector<std::string>;

TEST(MessageLines, GivesEachLineWithoutItsEnd) { EXPECT_EQ(linesOf("one\ntwo\n"), (Texts{"one", "two"})); }

TEST(MessageLines, AcceptsCarriageReturnLineFeed) {
  EXPECT_EQ(linesOf("one\r\ntwo\r\n"), (Texts{"one", "two"}));
}

TEST(MessageLines, SkipsBlankLines) { EXPECT_EQ(linesOf("\n\r\n \t\none\n\n"), (Texts{"one"})); }

TEST(MessageLines, KeepsALineBackUntilItsEndArrives) {
  MessageLines lines(maximum);
  lines.feed("on");
  EXPECT_EQ(taken(lines), Texts{});
  lines.feed("e\nt");
  EXPECT_EQ(taken(lines), Texts{"one"});
}

TEST(MessageLines, GivesTheRestWithoutALineEndWhenTheStreamEnds) {
  EXPECT_EQ(linesOf("one\ntwo"), (Texts{"one", "two"}));
}

TEST(MessageLines, TakesALineOfTheMaximumLengthAndRefusesOneByteMore) {
  EXPECT_EQ(linesOf("12345678\n"), Texts{"12345678"});
  EXPECT_EQ(linesOf("12345678\r\n"), Texts{"12345678"});
  EXPECT_EQ(linesOf("123456789\n"), Texts{"!"});
  EXPECT_EQ(linesOf("123456789\r\n"), Texts{"!"});
}

TEST(MessageLines, ReportsATooLongLineOnceWhenItHasEnded) {
  MessageLines lines(maximum);
  for (int i = 0; i < 100; ++i) {
    lines.feed("1234567890");
    EXPECT_EQ(taken(lines), Texts{});
  }
  lines.feed("\nnext\n");
  EXPECT_EQ(taken(lines), (Texts{"!", "next"}));
}

TEST(MessageLines, KeepsBothEndsOfATooLongLine) {
  const auto text = "begins" + std::string(10'000, '-') + "ends";
  for (const bool atOnce : {true, false}) {
    MessageLines lines(maximum);
    for (const char byte : text) {
      lines.feed(std::string_view(&byte, 1));
      if (!atOnce) {
        EXPECT_FALSE(lines.next());
      }
    }
    lines.feed("\r\n");
    const auto line = lines.next();
    ASSERT_TRUE(line && line->tooLong);
    EXPECT_TRUE(line->text.starts_with("begins")) << line->text;
    EXPECT_TRUE(line->end.ends_with("ends")) << line->end;
    EXPECT_LE(line->text.size() + line->end.size(), 10'000u);
  }
}

TEST(MessageLines, ReportsATooLongLineThatTheStreamsEndCutsOff) {
  MessageLines lines(maximum);
  lines.feed("1234567890");
  EXPECT_EQ(taken(lines), Texts{});
  lines.finish();
  EXPECT_EQ(taken(lines), Texts{"!"});
}

TEST(MessageLines, FindsTheSameLinesWhereverTheStreamIsSplit) {
  const std::string stream = "one\r\n\n12345678\n1234567890123\r\n\xED\x95\x9C\nlast\n123456789\nx";
  const Texts expected{"one", "12345678", "!", "\xED\x95\x9C", "last", "!", "x"};
  for (std::size_t split = 0; split <= stream.size(); ++split) {
    MessageLines lines(maximum);
    lines.feed(std::string_view(stream).substr(0, split));
    auto texts = taken(lines);
    lines.feed(std::string_view(stream).substr(split));
    lines.finish();
    for (auto& text : taken(lines)) texts.push_back(text);
    EXPECT_EQ(texts, expected) << "split at " << split;
  }
}

TEST(MessageLines, FindsTheSameLinesWhenBytesArriveOneByOne) {
  const std::string stream = "one\r\n12345678\r\n123456789012\r\nlast\n";
  MessageLines lines(maximum);
  Texts texts;
  for (const char byte : stream) {
    lines.feed(std::string_view(&byte, 1));
    for (auto& text : taken(lines)) texts.push_back(text);
  }
  EXPECT_EQ(texts, (Texts{"one", "12345678", "!", "last"}));
}

}  // namespace
}  // namespace velmora
