#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "BridgeCore/TurnOrder.h"

namespace velmora {
namespace {

using Turn = TurnOrder::Turn;

TEST(TurnOrder, TheFirstOneWaitsForNobody) {
  TurnOrder order;
  Turn turn(order);
  turn.wait();
}

TEST(TurnOrder, TurnsComeInTheOrderInWhichTheyWereDrawn) {
  TurnOrder order;
  std::vector<std::unique_ptr<Turn>> turns;
  for (int i = 0; i < 20; ++i) turns.push_back(std::make_unique<Turn>(order));
  std::vector<int> came;  // written in turn
  std::vector<std::thread> threads;
  for (int i = 19; i >= 0; --i) {
    threads.emplace_back([&came, i, turn = std::move(turns[static_cast<std::size_t>(i)])]() mutable {
      turn->wait();
      came.push_back(i);
      turn.reset();
    });
  }
  for (auto& thread : threads) thread.join();
  ASSERT_EQ(came.size(), 20u);
  EXPECT_TRUE(std::is_sorted(came.begin(), came.end()));
}

TEST(TurnOrder, OneThatGivesUpBeforeItsTurnHoldsNobodyUp) {
  TurnOrder order;
  std::optional<Turn> first(std::in_place, order);
  std::optional<Turn> second(std::in_place, order);
  Turn third(order);
  second.reset();
  first.reset();
  third.wait();
}

}  // namespace
}  // namespace velmora
