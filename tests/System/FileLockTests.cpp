#include <gtest/gtest.h>
#include <sys/stat.h>

#include <system_error>

#include "System/FileLock.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class FileLockTest : public ::testing::Test {
 protected:
  TemporaryDirectory directory;
  const std::filesystem::path file = directory / "lock";
};

TEST_F(FileLockTest, IsHeldByOneUntilItIsDestroyed) {
  auto first = FileLock::take(file);
  ASSERT_TRUE(first);
  EXPECT_EQ(testing::modeOf(file), 0600u);
  EXPECT_FALSE(FileLock::take(file));
  first.reset();
  EXPECT_TRUE(FileLock::take(file));
  EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(FileLockTest, CarriesATextThatOthersCanReadAndTheNextHolderFinds) {
  {
    auto lock = FileLock::take(file);
    EXPECT_EQ(lock->text(), "");
    lock->setText("a long text");
    lock->setText("shorter");
    EXPECT_EQ(lock->text(), "shorter");
    EXPECT_EQ(textOfLock(file), "shorter");
  }
  EXPECT_EQ(FileLock::take(file)->text(), "shorter");
  EXPECT_EQ(textOfLock(directory / "none"), "");
}

TEST_F(FileLockTest, IsNotFooledByWhatStandsInItsPlace) {
  std::filesystem::create_symlink(directory / "elsewhere", directory / "link");
  EXPECT_THROW(FileLock::take(directory / "link"), std::system_error);
  EXPECT_FALSE(std::filesystem::exists(directory / "elsewhere"));
  std::filesystem::create_directories(directory / "folder");
  EXPECT_THROW(FileLock::take(directory / "folder"), std::system_error);
  EXPECT_THROW(FileLock::take(directory / "none" / "lock"), std::system_error);
}

}  // namespace
}  // namespace velmora
