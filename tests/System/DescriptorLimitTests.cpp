#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>

#include "System/DescriptorLimit.h"

namespace velmora {
namespace {

class DescriptorLimitTest : public ::testing::Test {
 protected:
  DescriptorLimitTest() { ::getrlimit(RLIMIT_NOFILE, &before); }
  ~DescriptorLimitTest() override { ::setrlimit(RLIMIT_NOFILE, &before); }
  void lowerTo(rlim_t number) const {
    auto limit = before;
    limit.rlim_cur = number;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
  }

  struct rlimit before {};
};

TEST_F(DescriptorLimitTest, ALowOneIsRaisedTo1024AsFarAsTheUserMay) {
  lowerTo(256);
  EXPECT_EQ(descriptorLimit(), 256u);
  raiseDescriptorLimit();
  EXPECT_EQ(descriptorLimit(), std::min<std::size_t>(1024, before.rlim_max));
}

TEST_F(DescriptorLimitTest, AHighOneStays) {
  const auto high = std::min<rlim_t>(2048, before.rlim_max);
  lowerTo(high);
  raiseDescriptorLimit();
  EXPECT_EQ(descriptorLimit(), std::max<std::size_t>(high, std::min<std::size_t>(1024, before.rlim_max)));
}

}  // namespace
}  // namespace velmora
