// A client that breaks off where a test wants it to.
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "System/SocketPlatform.h"
#include "TerminalAutomation/Tmux/Direct/TmuxMessageWriter.h"

namespace velmora::testing {

class RawTmux {
 public:
  explicit RawTmux(const std::filesystem::path& socket) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket.native().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::connect(descriptor_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  }

  /// All that the direct way says before the server answers.
  static std::string opening(const std::vector<std::string>& arguments) {
    TmuxMessageWriter writer(::getpid());
    writer.identify({.process = ::getpid(), .terminal = "xterm", .folder = "/"});
    if (!arguments.empty()) writer.command(arguments);
    return std::string(writer.unsent());
  }

  void say(std::string_view bytes) const {
    EXPECT_EQ(SocketPlatform::writeToSocket(descriptor_.get(), bytes.data(), bytes.size()),
              static_cast<ssize_t>(bytes.size()));
  }

  /// Waits for a message of this type; returns its first number.
  std::int32_t await(TmuxMessageType type) {
    while (true) {
      TmuxMessageHeader header;
      if (!read(&header, sizeof header)) return -1;
      std::string body(header.length - sizeof header, '\0');
      if (!body.empty() && !read(body.data(), body.size())) return -1;
      if (header.type != type) continue;
      std::int32_t number = 0;
      std::memcpy(&number, body.data(), std::min(body.size(), sizeof number));
      return number;
    }
  }

 private:
  bool read(void* bytes, std::size_t count) const {
    pollfd polled{descriptor_.get(), POLLIN, 0};
    if (::poll(&polled, 1, 20'000) != 1) return false;
    return ::recv(descriptor_.get(), bytes, count, MSG_WAITALL) == static_cast<ssize_t>(count);
  }

  const FileDescriptor descriptor_ = SocketPlatform::openStreamSocket();
};

}  // namespace velmora::testing
