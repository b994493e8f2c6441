#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/Picture/CellWidth.h"

namespace velmora {
namespace {

TEST(CellWidth, LatinIsNarrow) {
  for (const char32_t c : {U'a', U' ', U'é', U'ß', U'─', U'█', U'⣿', U'Ж', U'\u00AD'})
    EXPECT_EQ(codePointWidth(c), 1);
}

TEST(CellWidth, EastAsianAndEmojiAreWide) {
  for (const char32_t c : {U'한', U'漢', U'あ', U'！', U'😀', U'👩'}) EXPECT_EQ(codePointWidth(c), 2);
}

TEST(CellWidth, WhatJoinsHasNone) {
  for (const char32_t c :
       {U'\u0301', U'\u200D', U'\uFE0F', U'\u1161', U'\u11AB', U'\u20E3', U'\x07', U'\x85'}) {
    EXPECT_EQ(codePointWidth(c), 0) << std::hex << static_cast<unsigned>(c);
  }
}

TEST(CellWidth, FlagsAreTwoNarrowLetters) { EXPECT_EQ(codePointWidth(U'\U0001F1F0'), 1); }

}  // namespace
}  // namespace velmora
