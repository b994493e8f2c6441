// Calls, saves and changes of the settings at once.
#include <atomic>
#include <functional>
#include <future>
#include <set>
#include <thread>

#include "tests/BridgeCore/HistoryStore/RecorderFixture.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using testing::everything;
using ::testing::IsEmpty;

class RequestRecorderThreadTest : public testing::RecorderFixture {};

// Holds the store's first write until the test lets it go on.
struct HeldWrite {
  std::promise<void> reached;
  std::promise<void> goOn;

  void hold(testing::HookedFileSystem& files) {
    files.before = [this, held = false](const auto& operation, const auto&) mutable {
      if (operation != "create" || held) return;
      held = true;
      reached.set_value();
      goOn.get_future().wait();
    };
  }
};

TEST_F(RequestRecorderThreadTest, RecordsCallsWhileTheStoreWrites) {
  HeldWrite write;
  write.hold(files);
  begin(1);
  std::thread persisting([this] { recorder.persist(store, everything); });
  write.reached.get_future().wait();
  begin(2);
  complete(1);
  EXPECT_THAT(inMemory(), ElementsAre(1, 2));
  write.goOn.set_value();
  persisting.join();
  EXPECT_THAT(onDisk(), ElementsAre(1));
}

TEST_F(RequestRecorderThreadTest, NeverLetsAnOlderListReplaceANewerOneOnDisk) {
  HeldWrite write;
  write.hold(files);
  begin(1);
  std::thread first([this] { recorder.persist(store, everything); });
  write.reached.get_future().wait();
  begin(2);
  std::thread second([this] { recorder.persist(store, everything); });
  begin(3);
  std::thread third([this] { recorder.scrub(store, everything); });
  write.goOn.set_value();
  first.join();
  second.join();
  third.join();
  EXPECT_THAT(onDisk(), ElementsAre(3, 2, 1));
}

TEST_F(RequestRecorderThreadTest, LeavesNoFileWhenAClearFollowsASaveUnderWay) {
  HeldWrite write;
  write.hold(files);
  begin(1);
  std::thread persisting([this] { recorder.persist(store, everything); });
  write.reached.get_future().wait();
  std::thread clearing([this] { recorder.clear(store); });
  write.goOn.set_value();
  persisting.join();
  clearing.join();
  EXPECT_FALSE(std::filesystem::exists(store.fileURL()));
  EXPECT_THAT(recorder.snapshot(), IsEmpty());
}

TEST_F(RequestRecorderThreadTest, ASaveThatWaitedWhileTheHistoryWasSwitchedOffWritesNothing) {
  PrivacySettingsStore settings(files, directory / "settings.json", everything);
  HeldWrite write;
  write.hold(files);
  begin(1);
  std::thread first([&] { recorder.persist(store, settings); });
  write.reached.get_future().wait();
  std::thread waiting([&] { recorder.persist(store, settings); });
  for (int chance = 0; chance < 5000; ++chance) std::this_thread::yield();
  settings.save({});
  write.goOn.set_value();
  first.join();
  waiting.join();
  EXPECT_FALSE(std::filesystem::exists(store.fileURL()));
}

TEST_F(RequestRecorderThreadTest, RunsWhatUsesAStoreOneAfterTheOther) {
  HistoryStore other(files, directory / "other" / "history.json");
  const std::vector<std::function<void()>> operations{
      [&] { recorder.persist(other, everything); },
      [&] { recorder.scrub(other, everything); },
      [&] { recorder.clear(other); },
  };
  for (const auto& operation : operations) {
    std::promise<void> reached;
    std::promise<void> goOn;
    std::atomic<bool> firstIsUnderWay{true};
    std::atomic<int> overtakers{0};
    files.before = [&](const auto& name, const auto& path) {
      if (path.native().starts_with((directory / "other").native())) {
        if (firstIsUnderWay) ++overtakers;
      } else if (name == "create") {
        reached.set_value();
        goOn.get_future().wait();
        firstIsUnderWay = false;
      }
    };
    std::thread first([this] { recorder.persist(store, everything); });
    reached.get_future().wait();
    std::thread second(operation);
    for (int chance = 0; chance < 5000; ++chance) std::this_thread::yield();
    goOn.set_value();
    first.join();
    second.join();
    EXPECT_EQ(overtakers, 0);
  }
}

TEST_F(RequestRecorderThreadTest, LosesNoCallAmongManyThreads) {
  constexpr std::uint64_t perThread = 60;
  std::vector<std::thread> threads;
  for (std::uint64_t thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this, thread] {
      for (std::uint64_t index = 0; index < perThread; ++index) {
        const auto number = thread * perThread + index + 1;
        begin(number);
        fillIn(number, "ls", "output", everything);
        complete(number);
        if (index % 10 == 0) recorder.persist(store, everything);
        if (index % 25 == 0) recorder.scrub(store, everything);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  recorder.persist(store, everything);
  std::set<std::uint64_t> seen;
  for (const auto& record : recorder.snapshot()) {
    EXPECT_EQ(record.status, RequestStatus::delivered);
    EXPECT_EQ(record.commandBody, "ls");
    seen.insert(record.requestId.bytes[15]);
  }
  EXPECT_EQ(seen.size(), 4 * perThread);
  EXPECT_EQ(store.load().size(), 4 * perThread);
}

}  // namespace
}  // namespace velmora
