#include <gtest/gtest.h>

#include <unordered_set>

#include "BridgeModels/Uuid.h"

namespace velmora {
namespace {

TEST(Uuid, ReadsEitherCaseAndWritesUpperCase) {
  const auto uuid = Uuid::parse("12345678-90ab-CDEF-1234-567890abcdef");
  ASSERT_TRUE(uuid);
  EXPECT_EQ(uuid->toString(), "12345678-90AB-CDEF-1234-567890ABCDEF");
}

TEST(Uuid, RefusesEveryOtherText) {
  for (const auto* text : {"", "12345678-90ab-cdef-1234-567890abcde", "12345678-90ab-cdef-1234-567890abcdeff",
                           "12345678090ab-cdef-1234-567890abcdef", "12345678-90ab-cdef-1234-567890abcdeg",
                           "{2345678-90ab-cdef-1234-567890abcde}", "1234567890abcdef1234567890abcdef",
                           "12345678-90ab-cdef-1234567890-abcdef", "-1234567-90ab-cdef-1234-567890abcdef",
                           "12345678-90ab-cdef-1234-567890abcd--"}) {
    EXPECT_EQ(Uuid::parse(text), std::nullopt) << text;
  }
}

TEST(Uuid, RandomOnesAreOfVersionFourAndDiffer) {
  std::unordered_set<Uuid> seen;
  for (int count = 0; count < 1000; ++count) {
    const auto uuid = Uuid::random();
    EXPECT_EQ(uuid.toString()[14], '4');
    EXPECT_NE(std::string("89AB").find(uuid.toString()[19]), std::string::npos);
    EXPECT_TRUE(seen.insert(uuid).second);
  }
}

}  // namespace
}  // namespace velmora
