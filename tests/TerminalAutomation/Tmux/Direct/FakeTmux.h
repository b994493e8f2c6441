// A tmux server that says what the test wants it to say.
#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

#include "System/SocketPlatform.h"
#include "tests/TerminalAutomation/Tmux/Direct/ServerBytes.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora::testing {

/// One connection, as the server sees it. The test's function runs on the server's thread.
class FakeTmuxClient {
 public:
  explicit FakeTmuxClient(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

  /// Reads up to and with the next message of this type; false at the end of the stream.
  bool await(TmuxMessageType type) {
    while (true) {
      while (received_.size() >= sizeof(TmuxMessageHeader)) {
        TmuxMessageHeader header;
        std::memcpy(&header, received_.data(), sizeof header);
        if (received_.size() < header.length) break;
        body = received_.substr(sizeof header, header.length - sizeof header);
        received_.erase(0, header.length);
        if (header.type == type) return true;
      }
      char block[65'536];
      const ssize_t count = ::read(descriptor_.get(), block, sizeof block);
      if (count <= 0) return false;
      received_.append(block, static_cast<std::size_t>(count));
    }
  }

  /// False when the client has gone.
  bool say(std::string_view bytes) {
    return writeWith(
               [this](const char* data, std::size_t size) {
                 return SocketPlatform::writeToSocket(descriptor_.get(), data, size);
               },
               bytes)
        .empty();
  }

  /// Until the client hangs up.
  void awaitEnd() {
    while (await(TmuxMessageType::version)) {
    }
  }

  int descriptor() const { return descriptor_.get(); }

  std::string body;  ///< Of the message that was awaited last.

 private:
  FileDescriptor descriptor_;
  std::string received_;
};

/// Serves one connection after the other on a thread of its own, in a private folder.
class FakeTmux {
 public:
  using Serve = std::function<void(FakeTmuxClient&)>;

  explicit FakeTmux(Serve serve) : serve_(std::move(serve)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket().native().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(listening_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(listening_.get(), 64), 0);
    thread_ = std::thread([this] {
      while (true) {
        FileDescriptor accepted = SocketPlatform::acceptConnection(listening_.get());
        if (!accepted) return;
        ++connections;
        FakeTmuxClient client(std::move(accepted));
        serve_(client);
      }
    });
  }
  ~FakeTmux() {
    ::shutdown(listening_.get(), SHUT_RDWR);
    thread_.join();
  }
  FakeTmux(const FakeTmux&) = delete;
  FakeTmux& operator=(const FakeTmux&) = delete;

  std::filesystem::path socket() const { return folder_ / "s"; }
  const TemporaryDirectory& folder() const { return folder_; }

  std::atomic<int> connections = 0;

 private:
  const TemporaryDirectory folder_;
  const Serve serve_;
  const FileDescriptor listening_ = SocketPlatform::openStreamSocket();
  std::thread thread_;
};

/// Answers each command with this output.
inline FakeTmux::Serve answering(std::string output) {
  return [output = std::move(output)](FakeTmuxClient& client) {
    if (!client.await(TmuxMessageType::command)) return;
    client.say(answerOf(output));
    client.awaitEnd();
  };
}

}  // namespace velmora::testing
