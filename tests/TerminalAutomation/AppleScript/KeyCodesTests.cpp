#include <gtest/gtest.h>

#include <vector>

#include "TerminalAutomation/AppleScript/KeyCodes.h"

namespace velmora {
namespace {

TEST(KeyCodes, AreThoseOfTheKeyboardInTheOrderOfTheKeys) {
  std::vector<std::int32_t> codes;
  for (const auto& entry : enumCases<TerminalKey>) codes.push_back(virtualKeyCode(entry.value));
  EXPECT_EQ(codes, (std::vector{126, 125, 123, 124, 36, 53, 48, 51, 117, 115, 119, 116, 121}));
}

}  // namespace
}  // namespace velmora
