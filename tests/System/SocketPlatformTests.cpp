#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <set>

#include "System/SocketPlatform.h"
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

// A socket that listens, one that is connected to it, and the connection's other end.
struct Sockets {
  Sockets() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = temporary / "s";
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const auto* const name = reinterpret_cast<const sockaddr*>(&address);
    EXPECT_EQ(::bind(listening.get(), name, sizeof address), 0);
    EXPECT_EQ(::listen(listening.get(), 1), 0);
    EXPECT_EQ(::connect(client.get(), name, sizeof address), 0);
    accepted = SocketPlatform::acceptConnection(listening.get());
  }

  const TemporaryDirectory temporary;
  const FileDescriptor listening = SocketPlatform::openStreamSocket();
  const FileDescriptor client = SocketPlatform::openStreamSocket();
  FileDescriptor accepted;
};

TEST(SocketPlatform, MarksEveryDescriptorCloseOnExec) {
  const Sockets sockets;
  const auto pipe = openPipe();
  for (const int descriptor : {sockets.listening.get(), sockets.client.get(), sockets.accepted.get(),
                               pipe.read.get(), pipe.write.get()}) {
    EXPECT_TRUE(isCloseOnExec(descriptor)) << meaningOf(descriptor);
  }
}

TEST(SocketPlatform, HandsNoDescriptorToAnExecutedProgram) {
  const Sockets sockets;
  const auto pipe = openPipe();
  const auto listing = listingOfAnExecutedProgram();
  EXPECT_NE(listing.find("pipe:["), std::string::npos) << "its own output stands there: " << listing;
  for (const int descriptor : {sockets.listening.get(), sockets.client.get(), sockets.accepted.get(),
                               pipe.read.get(), pipe.write.get()}) {
    EXPECT_EQ(listing.find(meaningOf(descriptor)), std::string::npos) << listing;
  }
}

TEST(SocketPlatform, AcceptsConnectionsThatBlock) {
  const Sockets sockets;
  EXPECT_TRUE(isBlocking(sockets.accepted.get()));
  EXPECT_TRUE(isBlocking(sockets.client.get()));
}

TEST(SocketPlatform, KnowsTheUserAndTheProcessAtTheOtherEnd) {
  const Sockets sockets;
  EXPECT_EQ(SocketPlatform::peerUser(sockets.client.get()), ::geteuid());
  EXPECT_EQ(SocketPlatform::peerUser(-1), std::nullopt);
  EXPECT_EQ(SocketPlatform::peerProcess(sockets.client.get()), ::getpid());
  EXPECT_EQ(SocketPlatform::peerProcess(-1), std::nullopt);
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
