#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <thread>

#include "System/ThreadName.h"

namespace velmora {
namespace {

std::string nameAfter(const std::string& name) {
  std::array<char, 64> buffer{};
  std::thread([&] {
    setThreadName(name);
    pthread_getname_np(pthread_self(), buffer.data(), buffer.size());
  }).join();
  return buffer.data();
}

TEST(ThreadNameTests, theThreadCarriesTheName) { EXPECT_EQ(nameAfter("accept"), "accept"); }

TEST(ThreadNameTests, aLongNameKeepsItsBeginning) {
  EXPECT_TRUE(nameAfter("a-name-of-more-than-fifteen-bytes").starts_with("a-name-of-more-"));
}

}  // namespace
}  // namespace velmora
