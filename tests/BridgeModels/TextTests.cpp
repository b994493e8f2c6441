#include <gtest/gtest.h>
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/utext.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "BridgeModels/Text.h"
#include "System/Utf8.h"

namespace velmora {
namespace {

// Where ICU's own iterator, run over the whole text, sees boundaries; the first is 0.
std::vector<std::size_t> boundariesByIcu(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> breaks(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  UText utext = UTEXT_INITIALIZER;
  utext_openUTF8(&utext, text.data(), static_cast<std::int64_t>(text.size()), &status);
  breaks->setText(&utext, status);
  EXPECT_TRUE(U_SUCCESS(status));
  std::vector<std::size_t> boundaries{0};
  for (auto next = breaks->next(); next != icu::BreakIterator::DONE; next = breaks->next()) {
    boundaries.push_back(static_cast<std::size_t>(next));
  }
  utext_close(&utext);
  return boundaries;
}

// Pieces that join each other in every way that the rules know, and some that never do.
const std::vector<std::string>& nastyPieces() {
  static const std::vector<std::string> pieces{
      "a",          "plain words ", "eight 88",           "line\nline\n", "\r",
      "\n",         "\r\n",         std::string("\0", 1), "\x1B[0m",      "\x7F",
      "\u0085",      // a C1 control
      "\u00AD",      // soft hyphen: a control for the rules
      "\u200B",      // zero width space
      "\u2028",      // line separator
      "\u200C",      // ZWNJ: extends
      "\u200D",      // ZWJ
      "\u0301",      // combining acute
      "\u0308",      // combining diaeresis
      "\u1112",      // Hangul L
      "\u1161",      // Hangul V
      "\u11AB",      // Hangul T
      "\uAC00",      // Hangul LV
      "\uAC01",      // Hangul LVT
      "\uD7B0",      // Hangul V, extended
      "\uA960",      // Hangul L, extended
      "\u4E2D",      // a Han character
      "\u0E33",      // Thai sara am: spacing mark
      "\u0903",      // Devanagari visarga: spacing mark
      "\u0915",      // Devanagari ka
      "\u094D",      // Devanagari virama
      "\u0600",      // Arabic number sign: prepend
      "\U000110BD",  // Kaithi number sign: prepend
      "\uFE0F",      // VS16
      "\u2764",      // heart
      "\U0001F600", "\U0001F468",   "\U0001F469",
      "\U0001F3FD",  // a skin tone
      "\U0001F1F0",  // regional indicators
      "\U0001F1F7",
      "\U000E0067",  // a tag
      "\uFFFD",
      "\x80",  // ill-formed from here on
      "\xC3",       "\xE0\xA0",     "\xED\xA0\x80",       "\xF0\x9F\x98", "\xFF",
  };
  return pieces;
}

std::string nastyText(std::mt19937& random, std::size_t mostPieces) {
  const auto& pieces = nastyPieces();
  std::uniform_int_distribution<std::size_t> anyPiece(0, pieces.size() - 1);
  std::uniform_int_distribution<std::size_t> anyLength(0, mostPieces);
  std::uniform_int_distribution<int> anyRepeat(0, 9);
  std::string text;
  for (auto left = anyLength(random); left > 0; --left) {
    const auto& piece = pieces[anyPiece(random)];
    for (int times = std::max(1, anyRepeat(random) - 6); times > 0; --times) text += piece;
  }
  return text;
}

// Compares all three functions with ICU for one text and one count.
void expectSameAsIcu(const std::string& text, const std::vector<std::size_t>& boundaries,
                     std::int64_t count) {
  const auto total = static_cast<std::int64_t>(boundaries.size()) - 1;
  const auto kept = static_cast<std::size_t>(std::clamp<std::int64_t>(count, 0, total));
  EXPECT_EQ(firstCharacters(text, count), text.substr(0, boundaries[kept]));
  const auto end = lastCharacters(text, count);
  EXPECT_EQ(end.totalCharacters, total);
  EXPECT_EQ(end.text, text.substr(boundaries[static_cast<std::size_t>(total) - kept]));
}

TEST(Text, AgreesWithIcuOnEveryPairAndTripleOfPieces) {
  const auto& pieces = nastyPieces();
  for (const auto& first : pieces) {
    for (const auto& second : pieces) {
      for (const auto& third : pieces) {
        const auto text = first + second + third;
        const auto boundaries = boundariesByIcu(text);
        ASSERT_EQ(characterCount(text), static_cast<std::int64_t>(boundaries.size()) - 1)
            << testing::PrintToString(text);
      }
    }
    if (testing::Test::HasFailure()) return;
  }
}

TEST(Text, AgreesWithIcuOnRandomTexts) {
  std::mt19937 random(20261121);
  for (int round = 0; round < 20000; ++round) {
    const auto text = nastyText(random, round % 100 == 0 ? 600 : 24);
    const auto boundaries = boundariesByIcu(text);
    const auto total = static_cast<std::int64_t>(boundaries.size()) - 1;
    ASSERT_EQ(characterCount(text), total) << testing::PrintToString(text);
    std::uniform_int_distribution<std::int64_t> anyCount(-1, total + 2);
    for (const auto count : {anyCount(random), anyCount(random), anyCount(random)}) {
      expectSameAsIcu(text, boundaries, count);
      if (testing::Test::HasFailure()) FAIL() << count << " of " << testing::PrintToString(text);
    }
  }
}

TEST(Text, AgreesWithIcuOnEveryCountOfALongText) {
  std::mt19937 random(7);
  std::string text;
  while (text.size() < 6000) text += nastyText(random, 100) + std::string(40, 'x');
  const auto boundaries = boundariesByIcu(text);
  for (std::int64_t count = 0; count <= static_cast<std::int64_t>(boundaries.size()); ++count) {
    expectSameAsIcu(text, boundaries, count);
  }
}

TEST(Text, CountsWhatAPersonSeesAsOneCharacter) {
  EXPECT_EQ(characterCount(""), 0);
  EXPECT_EQ(characterCount("ls -la\n"), 7);
  EXPECT_EQ(characterCount("a\r\nb"), 3);
  EXPECT_EQ(characterCount("\r\r\n\n"), 3);
  EXPECT_EQ(characterCount("e\u0301"), 1);
  EXPECT_EQ(characterCount("\u1112\u1161\u11AB\uAE00"), 2);
  EXPECT_EQ(characterCount("\U0001F468\u200D\U0001F469\u200D\U0001F467"), 1);
  EXPECT_EQ(characterCount("\U0001F1F0\U0001F1F7\U0001F1EF"), 2);
  EXPECT_EQ(characterCount("\u2764\uFE0F\U0001F44D\U0001F3FD"), 2);
}

TEST(Text, JoinsAMarkToTheLastLetterOfALongPlainRun) {
  for (std::size_t letters = 1; letters < 40; ++letters) {
    const auto text = std::string(letters, 'a') + "\u0301" + std::string(letters, 'b');
    EXPECT_EQ(characterCount(text), 2 * static_cast<std::int64_t>(letters));
    EXPECT_EQ(firstCharacters(text, static_cast<std::int64_t>(letters)),
              std::string(letters, 'a') + "\u0301");
  }
}

TEST(Text, CountsAnIllFormedSequenceLikeItsReplacement) {
  std::mt19937 random(3);
  for (int round = 0; round < 2000; ++round) {
    const auto text = nastyText(random, 20);
    ASSERT_EQ(characterCount(text), characterCount(repairUtf8(text))) << testing::PrintToString(text);
  }
}

TEST(Text, KeepsNothingForACountOfZeroOrLess) {
  for (const std::int64_t count :
       {std::int64_t{0}, std::int64_t{-5}, std::numeric_limits<std::int64_t>::min()}) {
    EXPECT_EQ(firstCharacters("abc", count), "");
    EXPECT_EQ(lastCharacters("abc", count).text, "");
    EXPECT_EQ(lastCharacters("abc", count).totalCharacters, 3);
  }
}

TEST(Text, KeepsTheWholeOfAShorterText) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(firstCharacters("abc", most), "abc");
  EXPECT_EQ(lastCharacters("abc", most).text, "abc");
  EXPECT_EQ(lastCharacters("", 3).text, "");
}

TEST(Text, CountsOnSeveralThreadsAtOnce) {
  std::vector<std::thread> threads;
  std::array<std::int64_t, 4> counts{};
  for (auto& count : counts) {
    threads.emplace_back([&count] {
      std::string text;
      for (int index = 0; index < 2000; ++index) text += "x\u0301\U0001F1F0\U0001F1F7";
      count = characterCount(text);
    });
  }
  for (auto& thread : threads) thread.join();
  for (const auto count : counts) EXPECT_EQ(count, 4000);
}

class TextLocale : public testing::Test {
 protected:
  ~TextLocale() override {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(previous_, status);
  }
  static void use(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale(name), status);
    ASSERT_TRUE(U_SUCCESS(status));
  }

 private:
  icu::Locale previous_ = icu::Locale::getDefault();
};

TEST_F(TextLocale, FindsAPartWhateverItsCase) {
  use("en_US");
  EXPECT_TRUE(containsIgnoringCase("ls -la", "LS"));
  EXPECT_TRUE(containsIgnoringCase("LS -LA", "s -l"));
  EXPECT_FALSE(containsIgnoringCase("ls -la", "la -"));
  EXPECT_TRUE(containsIgnoringCase("STRASSE", "stra\u00DFe"));
  EXPECT_TRUE(containsIgnoringCase("\u039F\u0394\u039F\u03A3", "\u03BF\u03B4\u03BF\u03C2"));  // final sigma
  EXPECT_TRUE(containsIgnoringCase("FILE", "file"));
  EXPECT_FALSE(containsIgnoringCase("[", "{"));
}

TEST_F(TextLocale, FindsAnEmptyPartEverywhere) {
  EXPECT_TRUE(containsIgnoringCase("", ""));
  EXPECT_TRUE(containsIgnoringCase("\uD55C", ""));
  EXPECT_FALSE(containsIgnoringCase("", "a"));
  EXPECT_FALSE(containsIgnoringCase("", "\uD55C"));
}

TEST_F(TextLocale, FindsAPartHoweverItsAccentsAreComposed) {
  use("ko_KR");
  EXPECT_TRUE(containsIgnoringCase("\u1112\u1161\u11AB\u1100\u1173\u11AF", "\uD55C"));
  EXPECT_TRUE(containsIgnoringCase("CAF\u00C9", "cafe\u0301"));
  EXPECT_FALSE(containsIgnoringCase("caf\u00E9", "cafe"));
}

TEST_F(TextLocale, KeepsTheTwoLettersIApartInTurkish) {
  use("tr_TR");
  EXPECT_TRUE(containsIgnoringCase("\u0130stanbul", "i"));
  EXPECT_TRUE(containsIgnoringCase("DIR", "d\u0131r"));
  EXPECT_FALSE(containsIgnoringCase("FILE", "file"));
  use("en_US");
  EXPECT_FALSE(containsIgnoringCase("DIR", "d\u0131r"));
}

}  // namespace
}  // namespace velmora
