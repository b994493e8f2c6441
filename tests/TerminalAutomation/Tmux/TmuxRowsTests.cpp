#include <gtest/gtest.h>

#include <algorithm>

#include "TerminalAutomation/Tmux/TmuxRows.h"
#include "tests/TerminalAutomation/Tmux/ScriptedTmux.h"

namespace velmora {
namespace {

using testing::clientLine;
using testing::paneAnswer;
using testing::paneLine;
using testing::samplePane;
using testing::serverLine;

TEST(TmuxRows, ReadsPanesAndClients) {
  PaneRow pane = samplePane(3, 2, 1);
  pane.dead = pane.inputOff = pane.synchronized = pane.applicationCursor = true;
  pane.title = "any – 제목: $x #{y}";
  const ClientRow client{.activity = 9, .created = 8, .session = 1, .window = 2, .name = "/dev/pts/9"};
  const auto listing = parseListing(paneAnswer(pane) + paneLine(samplePane(0, 0)) + clientLine(client));
  ASSERT_TRUE(listing.has_value());
  EXPECT_EQ(listing->panes, (std::vector<PaneRow>{pane, samplePane(0, 0)}));
  EXPECT_EQ(listing->clients, (std::vector<ClientRow>{client}));
}

TEST(TmuxRows, ReadsAnEmptyAnswer) {
  const auto listing = parseListing("");
  ASSERT_TRUE(listing.has_value());
  EXPECT_TRUE(listing->panes.empty());
}

TEST(TmuxRows, RefusesAnythingElse) {
  const std::string good = paneAnswer(samplePane(1, 1));
  std::string extraField = good;
  extraField.insert(good.size() - 1, "\tmore");
  std::string wrongSigil = good;
  wrongSigil.replace(wrongSigil.find("\t@1"), 3, "\t%1");
  std::string notANumber = good;
  notANumber.replace(notANumber.find("100"), 3, "1x0");
  for (const std::string& bad :
       {std::string("text\n"), std::string("\n"), good.substr(0, good.size() - 1), "R\t1\t2\n" + good,
        good + "?\n", extraField, wrongSigil, notANumber, std::string("R\t\n"),
        std::string("C\t1\t2\t$1\t@1\n"), std::string("S\t99999999999999999999") + good.substr(5)}) {
    EXPECT_FALSE(parseListing(bad).has_value()) << bad;
  }
}

TEST(TmuxRows, RefusesEveryTruncationOfARow) {
  const std::string server = serverLine(samplePane(1, 1));
  const std::string good = paneAnswer(samplePane(1, 1));
  for (std::size_t length = 1; length < server.size(); ++length) {
    EXPECT_FALSE(parseListing(good.substr(0, length)).has_value()) << length;
  }
  for (std::size_t length = server.size() + 1; length < good.size(); ++length) {
    EXPECT_FALSE(parseListing(good.substr(0, length)).has_value()) << length;
  }
}

TEST(TmuxRows, APaneWithoutItsServerIsNoListing) {
  const PaneRow pane = samplePane(1, 1);
  EXPECT_TRUE(parseListing(serverLine(pane)).has_value());
  EXPECT_FALSE(parseListing(paneLine(pane)).has_value());
  EXPECT_FALSE(parseListing(paneLine(pane) + serverLine(pane)).has_value());
}

TEST(TmuxRows, NamesAreShortWellFormedAndVisible) {
  PaneRow pane = samplePane(1, 1);
  const auto titleOf = [&](const std::string& title) {
    pane.title = title;
    const auto listing = parseListing(paneAnswer(pane));
    return listing ? listing->panes[0].title : "refused";
  };
  EXPECT_EQ(titleOf("a\xe2\x80\xae"
                    "b\xe2\x81\xa6"
                    "c\xe2\x80\x8b"
                    "d\xe2\x80\x8f"),
            "abcd");
  EXPECT_EQ(titleOf("\xe2\x80\x90 – \xe2\x81\xaa"), "\xe2\x80\x90 – \xe2\x81\xaa") << "those can be seen";
  EXPECT_EQ(titleOf(std::string(300'000, 'x')), std::string(256, 'x'));
  std::string joiners;
  for (int i = 0; i < 100'000; ++i) joiners += "\xcc\x81";
  EXPECT_EQ(titleOf(joiners).size(), 512u);
  EXPECT_EQ(titleOf("a\xff\xc3"), "a\xef\xbf\xbd\xef\xbf\xbd");
  pane.tty = "/dev/p\xff";
  EXPECT_EQ(parseListing(paneAnswer(pane))->panes[0].tty, "/dev/p\xef\xbf\xbd");
}

TEST(TmuxRows, NamesAsManyFieldsAsItReads) {
  const std::string line = paneLine(samplePane(1, 1));
  EXPECT_EQ(std::count(paneRowFormat().begin(), paneRowFormat().end(), '\t'),
            std::count(line.begin(), line.end(), '\t'));
  const std::string server = serverLine(samplePane(1, 1));
  EXPECT_EQ(std::count(serverRowFormat().begin(), serverRowFormat().end(), '\t'),
            std::count(server.begin(), server.end(), '\t'));
  const std::string client = clientLine({.name = "x"});
  EXPECT_EQ(std::count(clientRowFormat().begin(), clientRowFormat().end(), '\t'),
            std::count(client.begin(), client.end(), '\t'));
}

TEST(TmuxRows, KnowsWhatAVersionCanDo) {
  for (const auto* version : {"3.0a", "2.9", "3.1c", "3"}) EXPECT_TRUE(isTooOldTmux(version)) << version;
  for (const auto* version : {"3.2", "3.3a", "3.10", "next-3.8", "4", "master"}) {
    EXPECT_FALSE(isTooOldTmux(version)) << version;
  }
  for (const auto* version : {"3.2", "3.3a", "3.6b"}) EXPECT_FALSE(pasteCleans(version)) << version;
  for (const auto* version : {"3.7", "3.7c", "3.10", "next-3.8", "4", "30000000.1", "master"}) {
    EXPECT_TRUE(pasteCleans(version)) << version;
  }
}

}  // namespace
}  // namespace velmora
