#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <stdexcept>
#include <vector>

#include "System/SerialExecutor.h"

namespace velmora {
namespace {

TEST(SerialExecutorTests, worksThroughItsQueueInOrder) {
  SerialExecutor executor("test");
  std::vector<int> order;
  for (int i = 0; i < 100; ++i) executor.submit([&order, i] { order.push_back(i); });
  executor.submit([] {}).wait();
  ASSERT_EQ(order.size(), 100U);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
}

TEST(SerialExecutorTests, whatWorkThrowsArrivesThroughItsFuture) {
  SerialExecutor executor("test");
  auto failed = executor.submit([]() -> int { throw std::runtime_error("broken"); });
  EXPECT_THROW(failed.get(), std::runtime_error);
  EXPECT_EQ(executor.submit([] { return 7; }).get(), 7);
}

TEST(SerialExecutorTests, destructionFinishesTheWorkUnderWay) {
  bool done = false;
  {
    SerialExecutor executor("test");
    std::promise<void> started;
    executor.submit([&] {
      started.set_value();
      std::this_thread::yield();
      done = true;
    });
    started.get_future().wait();
  }
  EXPECT_TRUE(done);
}

TEST(SerialExecutorTests, itsThreadCarriesItsName) {
  SerialExecutor executor("worker");
  auto name = executor.submit([] {
    std::array<char, 64> buffer{};
    pthread_getname_np(pthread_self(), buffer.data(), buffer.size());
    return std::string(buffer.data());
  });
  EXPECT_EQ(name.get(), "worker");
}

}  // namespace
}  // namespace velmora
