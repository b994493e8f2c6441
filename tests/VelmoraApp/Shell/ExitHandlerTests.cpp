#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "VelmoraApp/Shell/ExitHandler.h"

namespace velmora {
namespace {

// Each in a process of its own, made by starting this program again.
class ExitHandlerDeathTest : public ::testing::Test {
 protected:
  ExitHandlerDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(ExitHandlerDeathTest, ALibrarysExitLeavesFirst) {
  EXPECT_EXIT(
      {
        const ExitHandler handler([] { std::fputs("left", stderr); });
        std::exit(0);  // NOLINT(concurrency-mt-unsafe)
      },
      ::testing::ExitedWithCode(EXIT_FAILURE), ::testing::HasSubstr("left"));
}

TEST_F(ExitHandlerDeathTest, TheEndOfMainDoesNot) {
  EXPECT_EXIT(
      {
        {
          const ExitHandler handler([] { std::fputs("left", stderr); });
        }
        std::exit(7);  // NOLINT(concurrency-mt-unsafe)
      },
      ::testing::ExitedWithCode(7), ::testing::Not(::testing::HasSubstr("left")));
}

}  // namespace
}  // namespace velmora
