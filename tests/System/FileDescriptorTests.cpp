#include <fcntl.h>
#include <gtest/gtest.h>

#include <string>
#include <system_error>

#include "System/FileDescriptor.h"

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

TEST(FileDescriptor, SaysWhichFileCannotBeOpened) {
  try {
    openFile("/nowhere/at/all", O_RDONLY);
    FAIL() << "opened";
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code().value(), ENOENT);
    EXPECT_NE(std::string(error.what()).find("/nowhere/at/all"), std::string::npos);
  }
}

TEST(FileDescriptor, WritesAllOrSaysWhatIsLeft) {
  const Pipe pipe = openPipe();
  setNonBlocking(pipe.write);
  EXPECT_EQ(writeTo(pipe.write, "hello"), "");
  const std::string tooMuch(std::size_t{1} << 20, 'x');
  const auto left = writeTo(pipe.write, tooMuch);
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_GT(left.size(), 0u);
  EXPECT_LT(left.size(), tooMuch.size());
}

TEST(FileDescriptor, GoesOnWithWhatAWriteLeft) {
  std::string taken;
  const auto threeAtATime = [&](const char* data, std::size_t size) {
    const std::size_t count = std::min<std::size_t>(3, size);
    taken.append(data, count);
    return static_cast<ssize_t>(count);
  };
  EXPECT_EQ(writeWith(threeAtATime, "seventeen letters"), "");
  EXPECT_EQ(taken, "seventeen letters");
}

}  // namespace
}  // namespace velmora
