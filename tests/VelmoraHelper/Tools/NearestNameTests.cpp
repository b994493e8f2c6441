#include <gtest/gtest.h>

#include <array>

#include "VelmoraHelper/Tools/NearestName.h"

namespace velmora {
namespace {

constexpr std::array<std::string_view, 4> names{"terminal_status", "terminal_send_key",
                                                "terminal_send_command", "doctor"};

TEST(NearestName, CountsTheLettersToChange) {
  EXPECT_EQ(editDistance("", ""), 0u);
  EXPECT_EQ(editDistance("", "abc"), 3u);
  EXPECT_EQ(editDistance("abc", ""), 3u);
  EXPECT_EQ(editDistance("kitten", "sitting"), 3u);
  EXPECT_EQ(editDistance("flaw", "lawn"), 2u);
  EXPECT_EQ(editDistance("same", "same"), 0u);
}

TEST(NearestName, FindsTheNameThatWasMeant) {
  EXPECT_EQ(nearestName("terminal_sned_key", names), "terminal_send_key");
  EXPECT_EQ(nearestName("terminal_send_comand", names), "terminal_send_command");
  EXPECT_EQ(nearestName("doc", names), std::nullopt);
  EXPECT_EQ(nearestName("docto", names), "doctor");
}

TEST(NearestName, FindsANameWithoutItsPrefix) {
  EXPECT_EQ(nearestName("send_key", names, "terminal_"), "terminal_send_key");
  EXPECT_EQ(nearestName("statsu", names, "terminal_"), "terminal_status");
  EXPECT_EQ(nearestName("send_key", names), std::nullopt);
}

TEST(NearestName, FindsNothingForWhatIsLikeNoName) {
  EXPECT_EQ(nearestName("frobnicate", names, "terminal_"), std::nullopt);
  EXPECT_EQ(nearestName("", names), std::nullopt);
  EXPECT_EQ(nearestName("x", {}), std::nullopt);
}

TEST(NearestName, AsksOnlyWhenThereIsOne) {
  EXPECT_EQ(didYouMean("doctor"), "; did you mean doctor?");
  EXPECT_EQ(didYouMean(std::nullopt), "");
}

}  // namespace
}  // namespace velmora
