#include <gtest/gtest.h>

#include "System/FindProgram.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

TEST(FindProgram, LooksInTheUsualFoldersToo) {
  EXPECT_TRUE(findProgram("sh", {}).has_value());
  EXPECT_TRUE(findProgram("sh", {{"PATH", "/nonexistent"}}).has_value());
}

TEST(FindProgram, NeverTakesWhatLiesInTheCurrentFolder) {
  const TemporaryDirectory directory;
  const auto before = std::filesystem::current_path();
  const auto file = directory / "only-here";
  testing::writeFile(file, "#!/bin/sh\n");
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  std::filesystem::current_path(directory.path());
  EXPECT_FALSE(findProgram("only-here", {{"PATH", ":.:"}}).has_value());
  EXPECT_TRUE(findProgram("only-here", {{"PATH", directory.path().string()}}).has_value());
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace velmora
