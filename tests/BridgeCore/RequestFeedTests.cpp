#include <gtest/gtest.h>

#include <future>
#include <list>

#include "BridgeCore/RequestFeed.h"
#include "tests/support/FakeTime.h"

namespace velmora {
namespace {

using testing::numberedUuid;

constexpr std::chrono::milliseconds now{0};
constexpr std::chrono::hours longTime{1};

MCPRequestRecord numberedRequest(std::uint64_t number) { return {.requestId = numberedUuid(number)}; }

TEST(RequestFeed, TellsEachWatcherWhatEndsFromThenOnWithItsCommand) {
  RequestFeed feed;
  EXPECT_FALSE(feed.isWatched());
  RequestFeed::Watcher first(feed);
  EXPECT_TRUE(feed.isWatched());
  feed.tell(numberedRequest(1), "ls");
  RequestFeed::Watcher second(feed);
  feed.tell(numberedRequest(2), "");
  const auto seen = first.next(now).requests;
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0].commandBody, "ls");
  EXPECT_EQ(seen[1].commandBody, std::nullopt);
  EXPECT_EQ(second.next(now).requests.size(), 1u);
  EXPECT_TRUE(first.next(now).requests.empty());
}

TEST(RequestFeed, DropsTheOldestForASlowWatcherAndSaysHowMany) {
  RequestFeed feed;
  RequestFeed::Watcher watcher(feed);
  for (std::uint64_t number = 0; number < RequestFeed::mostWaiting + 3; ++number)
    feed.tell(numberedRequest(number), std::string(5'000, 'x'));
  const auto seen = watcher.next(now);
  EXPECT_EQ(seen.missed, 3);
  EXPECT_EQ(seen.requests.size(), RequestFeed::mostWaiting);
  EXPECT_EQ(seen.requests[0].requestId, numberedUuid(3));
  EXPECT_EQ(seen.requests[0].commandBody->size(), RequestFeed::mostCommandBytes);
  EXPECT_EQ(watcher.next(now).missed, 0);
}

TEST(RequestFeed, HasPlaceForAFewWatchersAndForAnotherOnceOneLeaves) {
  RequestFeed feed;
  std::list<RequestFeed::Watcher> watchers;
  for (std::size_t i = 0; i < RequestFeed::mostWatchers; ++i) watchers.emplace_back(feed);
  EXPECT_THROW(watchers.emplace_back(feed), TooManyWatchers);
  watchers.pop_front();
  watchers.emplace_back(feed);
  feed.tell(numberedRequest(1), "");
  EXPECT_EQ(watchers.back().next(now).requests.size(), 1u);
}

TEST(RequestFeed, WakesWhoWaitsWhenSomethingEndsAndWhenItIsClosed) {
  RequestFeed feed;
  RequestFeed::Watcher watcher(feed);
  auto waiting = std::async(std::launch::async, [&] { return watcher.next(longTime); });
  feed.tell(numberedRequest(1), "");
  EXPECT_EQ(waiting.get().requests.size(), 1u);
  waiting = std::async(std::launch::async, [&] { return watcher.next(longTime); });
  feed.close();
  EXPECT_TRUE(waiting.get().requests.empty());
  EXPECT_TRUE(watcher.next(longTime).requests.empty());
}

}  // namespace
}  // namespace velmora
