#include <QtCore/QThread>
#include <atomic>
#include <future>
#include <thread>
#include <vector>

#include "VelmoraApp/AppModel/Worker.h"
#include "tests/VelmoraApp/AppFixture.h"

namespace velmora {
namespace {

using testing::spinUntil;

TEST(Worker, WorksOnAnotherThreadAndAnswersOnTheReceivers) {
  QObject receiver;
  Worker worker("worker");
  QThread* worked = nullptr;
  QThread* answered = nullptr;
  worker.run(
      &receiver, [&] { return worked = QThread::currentThread(); },
      [&](QThread* result) {
        EXPECT_EQ(result, worked);
        answered = QThread::currentThread();
      });
  ASSERT_TRUE(spinUntil([&] { return answered != nullptr; }));
  EXPECT_EQ(answered, QThread::currentThread());
  EXPECT_NE(worked, answered);
}

TEST(Worker, KeepsTheOrderOfTheCalls) {
  QObject receiver;
  Worker worker("worker");
  std::vector<int> answers;
  for (int number = 0; number < 100; ++number) {
    worker.run(
        &receiver, [number] { return number; }, [&](int result) { answers.push_back(result); });
  }
  ASSERT_TRUE(spinUntil([&] { return answers.size() == 100; }));
  EXPECT_TRUE(std::is_sorted(answers.begin(), answers.end()));
}

TEST(Worker, DrainingWaitsForTheWorkAndNotForTheAnswers) {
  QObject receiver;
  Worker worker("worker");
  bool worked = false;
  bool answered = false;
  worker.run(
      &receiver, [&] { return worked = true; }, [&](bool) { answered = true; });
  worker.drain();
  EXPECT_TRUE(worked);
  EXPECT_FALSE(answered);
  EXPECT_TRUE(spinUntil([&] { return answered; }));
}

TEST(Worker, DestructionWaitsForTheWorkUnderWay) {
  QObject receiver;
  std::promise<void> reached;
  std::atomic<bool> ended = false;
  {
    Worker worker("worker");
    worker.run(
        &receiver,
        [&] {
          reached.set_value();
          for (int chance = 0; chance < 5000; ++chance) std::this_thread::yield();
          return ended = true;
        },
        [](bool) {});
    reached.get_future().wait();
  }
  EXPECT_TRUE(ended);
}

}  // namespace
}  // namespace velmora
