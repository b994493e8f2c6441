#include <gtest/gtest.h>

#include <ctime>

#include "System/RunningProcess.h"
#include "tests/support/ChildProgram.h"

namespace velmora {
namespace {

using testing::ChildProgram;

TEST(RunningProcess, IsNamedAfterItsProgramWithItsStart) {
  const auto before = std::time(nullptr);
  ChildProgram program({"/bin/sleep", "1000"}, {});
  ASSERT_TRUE(testing::eventually([&] {
    const auto found = runningProcess(program.process());
    return found && found->name != runningProcess(::getpid())->name;  // not this program's any more
  }));
  const auto found = runningProcess(program.process());
  ASSERT_TRUE(found);
  EXPECT_NE(found->name.find(std::filesystem::canonical("/bin/sleep").filename().string()),
            std::string::npos);
  ASSERT_TRUE(found->startedAt);
  // The system says to the second when it was started itself.
  EXPECT_GT(*found->startedAt, static_cast<double>(before) - 2);
  EXPECT_LT(*found->startedAt, static_cast<double>(std::time(nullptr)) + 2);
}

TEST(RunningProcess, OneThatHasEndedDoesNotRun) {
  ChildProgram program({"/bin/true"}, {});
  const auto process = program.process();
  EXPECT_TRUE(testing::eventually([&] { return !runningProcess(process); })) << "before its parent has asked";
  EXPECT_EQ(program.wait(), 0);
  EXPECT_FALSE(runningProcess(process));
}

}  // namespace
}  // namespace velmora
