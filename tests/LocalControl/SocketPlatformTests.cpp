#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <set>

#include "LocalControl/SocketPlatform.h"
#include "LocalControl/UnixSocketClient.h"
#include "LocalControl/UnixSocketServer.h"
#include "tests/LocalControl/SocketTesting.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

bool isCloseOnExec(int descriptor) { return (::fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0; }
bool isBlocking(int descriptor) { return (::fcntl(descriptor, F_GETFL) & O_NONBLOCK) == 0; }

// What a descriptor stands for, such as "socket:[4711]".
std::string meaningOf(int descriptor) {
  return fs::read_symlink(fs::path("/proc/self/fd") / std::to_string(descriptor)).native();
}

// What `/proc/self/fd` shows in a program that this one executes.
std::string listingOfAnExecutedProgram() {
  auto [output, input] = openPipe();
  const int source = input.get();
  const pid_t process = ::fork();
  if (process == 0) {
    ::dup2(source, STDOUT_FILENO);
    ::execl("/bin/ls", "ls", "-l", "/proc/self/fd", nullptr);
    ::_exit(127);
  }
  input.close();
  std::string text;
  for (char part[4096]; true;) {
    const auto count = ::read(output.get(), part, sizeof part);
    if (count <= 0) break;
    text.append(part, static_cast<std::size_t>(count));
  }
  int status = -1;
  EXPECT_EQ(::waitpid(process, &status, 0), process);
  EXPECT_EQ(status, 0);
  return text;
}

TEST(SocketPlatform, MarksEveryDescriptorCloseOnExec) {
  const TemporaryDirectory temporary;
  UnixSocketServer server(temporary / "s");
  const auto client = UnixSocketClient::connect(temporary / "s");
  const auto accepted = server.acceptConnection();
  const auto pipe = openPipe();
  for (const int descriptor :
       {server.descriptor(), client.descriptor(), accepted.descriptor(), pipe.read.get(), pipe.write.get()}) {
    EXPECT_TRUE(isCloseOnExec(descriptor)) << meaningOf(descriptor);
  }
}

TEST(SocketPlatform, HandsNoDescriptorToAnExecutedProgram) {
  const TemporaryDirectory temporary;
  UnixSocketServer server(temporary / "s");
  const auto client = UnixSocketClient::connect(temporary / "s");
  const auto accepted = server.acceptConnection();
  const auto pipe = openPipe();
  const auto listing = listingOfAnExecutedProgram();
  EXPECT_NE(listing.find("pipe:["), std::string::npos) << "its own output stands there: " << listing;
  for (const int descriptor :
       {server.descriptor(), client.descriptor(), accepted.descriptor(), pipe.read.get(), pipe.write.get()}) {
    EXPECT_EQ(listing.find(meaningOf(descriptor)), std::string::npos) << listing;
  }
}

TEST(SocketPlatform, AcceptsConnectionsThatBlock) {
  const TemporaryDirectory temporary;
  UnixSocketServer server(temporary / "s");
  const auto client = UnixSocketClient::connect(temporary / "s");
  EXPECT_TRUE(isBlocking(server.acceptConnection().descriptor()));
  EXPECT_TRUE(isBlocking(client.descriptor()));
}

TEST(SocketPlatform, KnowsTheUserAtTheOtherEnd) {
  const auto ends = connectedPair();
  EXPECT_EQ(SocketPlatform::peerUser(ends.first.descriptor()), ::geteuid());
  EXPECT_EQ(SocketPlatform::peerUser(-1), std::nullopt);
}

TEST(SocketPlatform, TakesTheRuntimeDirectoryOnlyWhenItIsTheUsersOwn) {
  const TemporaryDirectory temporary;
  fs::create_directory_symlink(temporary.path(), temporary / "link");
  const auto answerFor = [](const std::string& stated) {
    return SocketPlatform::userTemporaryDirectory({{"XDG_RUNTIME_DIR", stated}});
  };
  EXPECT_EQ(answerFor(temporary.path()), temporary.path());
  const auto unstated = SocketPlatform::userTemporaryDirectory({});
  EXPECT_EQ(answerFor(temporary / "link"), unstated);
  EXPECT_EQ(answerFor(temporary / "missing"), unstated);
  EXPECT_EQ(answerFor(fs::relative(temporary.path())), unstated);
  EXPECT_EQ(answerFor(""), unstated);
}

// Only root can give a directory away; for anyone else /usr is a foreign one.
TEST(SocketPlatform, PassesOverARuntimeDirectoryOfAnotherUser) {
  const TemporaryDirectory temporary;
  fs::path foreign = "/usr";
  if (::geteuid() == 0) {
    foreign = temporary / "foreign";
    fs::create_directory(foreign);
    ASSERT_EQ(::chown(foreign.c_str(), 65534, 65534), 0);
  }
  EXPECT_EQ(SocketPlatform::userTemporaryDirectory({{"XDG_RUNTIME_DIR", foreign.native()}}),
            SocketPlatform::userTemporaryDirectory({}));
}

TEST(SocketPlatform, FallsBackToTheUsualRuntimeDirectoryWhenItIsTheUsersOwn) {
  const auto usual = fs::path("/run/user") / std::to_string(::geteuid());
  struct stat status {};
  const bool own =
      ::lstat(usual.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
  EXPECT_EQ(SocketPlatform::userTemporaryDirectory({}), own ? std::optional(usual) : std::nullopt);
}

}  // namespace
}  // namespace velmora
