#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/PaneText.h"

namespace velmora {
namespace {

TEST(PaneText, LosesBlanksAtLineEndsAndEmptyLinesAtTheEnd) {
  EXPECT_EQ(tidyPaneText(""), "");
  EXPECT_EQ(tidyPaneText("\n"), "");
  EXPECT_EQ(tidyPaneText(" \n\t\n  "), "");
  EXPECT_EQ(tidyPaneText("a"), "a");
  EXPECT_EQ(tidyPaneText("a \t \n"), "a");
  EXPECT_EQ(tidyPaneText("\n\n  a b  \n\n c\n   \n\n"), "\n\n  a b\n\n c");
  EXPECT_EQ(tidyPaneText("a\nb"), "a\nb");
}

TEST(PaneText, IsWellFormed) { EXPECT_EQ(tidyPaneText("a\xff \n"), "a\xef\xbf\xbd"); }

}  // namespace
}  // namespace velmora
