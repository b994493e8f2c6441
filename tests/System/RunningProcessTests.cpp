#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <ctime>
#include <future>

#include "System/RunningProcess.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/PtyProgram.h"
#include "tests/support/TemporaryDirectory.h"

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

TEST(RunningProcess, TellsItsParentAndItsTerminal) {
  testing::PtyProgram program({"/bin/sleep", "1000"}, {});
  ASSERT_TRUE(testing::eventually([&] {
    const auto found = runningProcess(program.process());
    return found && found->terminal == program.terminal();
  }));
  EXPECT_EQ(runningProcess(program.process())->parent, ::getpid());
  EXPECT_EQ(runningProcess(1)->terminal, std::nullopt);
}

TEST(RunningProcess, TellsThatItIsStoppedAndThatItsProgramWasReplaced) {
  const TemporaryDirectory folder;
  std::filesystem::copy_file("/bin/sleep", folder / "program");
  ChildProgram program({(folder / "program").string(), "1000"}, {});
  const auto about = [&] { return runningProcess(program.process()).value_or(RunningProcess{}); };
  ASSERT_TRUE(testing::eventually([&] { return about().name == "program"; }));
  EXPECT_FALSE(about().isStopped);
  EXPECT_FALSE(about().isReplaced);
  program.signal(SIGSTOP);
  EXPECT_TRUE(testing::eventually([&] { return about().isStopped; }));
  program.signal(SIGCONT);
  std::filesystem::remove(folder / "program");
  EXPECT_TRUE(testing::eventually([&] { return about().isReplaced && !about().isStopped; }));
  EXPECT_EQ(about().name, "program");
}

TEST(RunningProcess, OneThatHasEndedDoesNotRun) {
  ChildProgram program({"/bin/true"}, {});
  const auto process = program.process();
  EXPECT_TRUE(testing::eventually([&] { return !runningProcess(process); })) << "before its parent has asked";
  EXPECT_EQ(program.wait(), 0);
  EXPECT_FALSE(runningProcess(process));
}

TEST(RunningProcess, OneThatEndsWhileItIsLookedAtDoesNotRun) {
  std::atomic<pid_t> process = 0;
  std::atomic<bool> over = false;
  auto looks = std::async(std::launch::async, [&] {
    while (!over) runningProcess(process);
  });
  for (int round = 0; round < 500; ++round) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    process = child;
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
  }
  over = true;
  EXPECT_NO_THROW(looks.get());
}

TEST(RunningProcess, ThisOneKnowsItsFile) {
  const auto file = runningProgramFile();
  EXPECT_TRUE(file.is_absolute());
  EXPECT_TRUE(std::filesystem::is_regular_file(file));
  EXPECT_EQ(file.filename(), runningProcess(::getpid())->name);
}

}  // namespace
}  // namespace velmora
