// Conditions that a test makes on purpose: a client that runs as another user, and a process that has no
// descriptor left.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "LocalControl/UnixSocketEndpoint.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {

inline constexpr uid_t otherUser = 65534;

/// Takes away the protection that the directory's and the socket's modes give, so that the peer check is all
/// that is left.
inline void openToEveryone(const TemporaryDirectory& root, const std::filesystem::path& directory,
                           const std::filesystem::path& socket) {
  std::filesystem::permissions(root.path(), std::filesystem::perms(0755));
  std::filesystem::permissions(directory, std::filesystem::perms(0755));
  std::filesystem::permissions(socket, std::filesystem::perms(0666));
}

/// A process (a fork of this one, which must be root's) that becomes another user, connects and reads.
class OtherUser {
 public:
  enum Outcome { closedByServer = 10, answered, couldNotBecomeOther, couldNotConnect };

  explicit OtherUser(const std::filesystem::path& socket) {
    const auto address = UnixSocketEndpoint::address(socket);
    process_ = ::fork();
    if (process_ == 0) ::_exit(connectAndRead(address));
    EXPECT_GT(process_, 0);
  }

  /// Waits for the process's end.
  int outcome() const {
    int status = 0;
    EXPECT_EQ(::waitpid(process_, &status, 0), process_);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  // System calls only: the process that forked may have other threads.
  static Outcome connectAndRead(const sockaddr_un& address) {
    if (::setgid(otherUser) != 0 || ::setuid(otherUser) != 0) return couldNotBecomeOther;
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&address),
                  UnixSocketEndpoint::addressLength) != 0) {
      return couldNotConnect;
    }
    char byte = 0;
    return ::read(descriptor, &byte, 1) > 0 ? answered : closedByServer;
  }

  pid_t process_ = -1;
};

/// While it lives, this process can open no further descriptor.
class NoMoreDescriptors {
 public:
  NoMoreDescriptors() {
    EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &before_), 0);
    const FileDescriptor lowestFree(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    auto lowered = before_;
    lowered.rlim_cur = static_cast<rlim_t>(lowestFree.get());
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &lowered), 0);
  }
  ~NoMoreDescriptors() { EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &before_), 0); }
  NoMoreDescriptors(const NoMoreDescriptors&) = delete;
  NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;

 private:
  struct rlimit before_ {};
};

}  // namespace velmora
