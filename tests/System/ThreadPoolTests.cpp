#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <set>
#include <vector>

#include "System/ThreadPool.h"

namespace velmora {
namespace {

TEST(ThreadPoolTests, worksOnAsMuchAtOnceAsItHasThreads) {
  ThreadPool pool("test", 3);
  std::latch together(3);
  std::vector<std::future<void>> done;
  // None of the three could end if they did not meet.
  for (int i = 0; i < 3; ++i) done.push_back(pool.submit([&] { together.arrive_and_wait(); }));
  for (auto& one : done) one.get();
}

TEST(ThreadPoolTests, neverWorksOnMoreAtOnce) {
  ThreadPool pool("test", 2);
  std::atomic<int> inside = 0;
  std::atomic<int> most = 0;
  std::vector<std::future<std::thread::id>> done;
  for (int i = 0; i < 200; ++i) {
    done.push_back(pool.submit([&] {
      const int now = ++inside;
      if (now > most) most = now;
      std::this_thread::yield();
      --inside;
      return std::this_thread::get_id();
    }));
  }
  std::set<std::thread::id> threads;
  for (auto& one : done) threads.insert(one.get());
  EXPECT_LE(most, 2);
  EXPECT_LE(threads.size(), 2u);
}

TEST(ThreadPoolTests, aThreadThatIsFreeIsUsedAgain) {
  ThreadPool pool("test", 64);
  std::set<std::thread::id> threads;
  for (int i = 0; i < 200; ++i) {
    threads.insert(pool.submit([] { return std::this_thread::get_id(); }).get());
  }
  // A thread that has answered may not yet wait again when the next work comes, so it need not be one.
  EXPECT_LT(threads.size(), 64u);
}

}  // namespace
}  // namespace velmora
