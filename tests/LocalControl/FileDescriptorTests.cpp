#include <fcntl.h>
#include <gtest/gtest.h>

#include "LocalControl/FileDescriptor.h"

namespace velmora {
namespace {

int openedFile() { return ::open("/dev/null", O_RDONLY | O_CLOEXEC); }
bool isOpen(int descriptor) { return ::fcntl(descriptor, F_GETFD) >= 0; }

TEST(FileDescriptor, ClosesWhenDestroyed) {
  const int raw = openedFile();
  {
    const FileDescriptor owner(raw);
    EXPECT_TRUE(owner);
    EXPECT_TRUE(isOpen(raw));
  }
  EXPECT_FALSE(isOpen(raw));
}

TEST(FileDescriptor, HoldsNoneByDefaultAndAfterClose) {
  FileDescriptor owner;
  EXPECT_FALSE(owner);
  owner = FileDescriptor(openedFile());
  const int raw = owner.get();
  owner.close();
  EXPECT_FALSE(owner);
  EXPECT_FALSE(isOpen(raw));
}

TEST(FileDescriptor, MovesWithoutClosing) {
  const int raw = openedFile();
  FileDescriptor first(raw);
  const FileDescriptor second(std::move(first));
  EXPECT_EQ(second.get(), raw);
  EXPECT_TRUE(isOpen(raw));
}

TEST(FileDescriptor, ClosesTheOldOneWhenAssignedAnother) {
  const int old = openedFile();
  const int other = openedFile();
  FileDescriptor owner(old);
  owner = FileDescriptor(other);
  EXPECT_FALSE(isOpen(old));
  EXPECT_TRUE(isOpen(other));
}

}  // namespace
}  // namespace velmora
