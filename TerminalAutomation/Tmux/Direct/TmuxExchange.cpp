#include "TerminalAutomation/Tmux/Direct/TmuxExchange.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

#include "System/SocketPlatform.h"
#include "TerminalAutomation/Tmux/Direct/TmuxConversation.h"

namespace velmora {

namespace {

using End = TmuxAnswer::End;

class Exchange {
 public:
  Exchange(const FileDescriptor& server, const FileDescriptor& cancel, const TmuxInvocation& invocation,
           const TmuxClientIdentity& identity)
      : server_(server),
        cancel_(cancel),
        deadline_(invocation.deadline),
        meanwhile_(invocation.meanwhile),
        conversation_(invocation, identity) {}

  TmuxExchangeResult run() {
    send();
    if (meanwhile_ && conversation_.commandMayHaveLeft()) meanwhile_();
    while (!conversation_.ended() && !broken_) step();
    return {.answer = std::move(conversation_.answer()),
            .commandMayHaveLeft = conversation_.commandMayHaveLeft(),
            .surprise = std::move(surprise_)};
  }

 private:
  void step() {
    send();
    const bool sending = !conversation_.unsent().empty() && !cannotSend_;
    std::array<pollfd, 2> polled{{{server_.get(), static_cast<short>(sending ? POLLIN | POLLOUT : POLLIN), 0},
                                  {cancel_.get(), POLLIN, 0}}};
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline_ - std::chrono::steady_clock::now()).count();
    ::poll(polled.data(), polled.size(), static_cast<int>(std::clamp<std::int64_t>(left, 0, 60'000)));
    // These two before anything is read: the server may be about to ask for the input.
    if (polled[1].revents != 0) return breakOff(End::cancelled);
    if (std::chrono::steady_clock::now() >= deadline_) return breakOff(End::timedOut);
    if ((polled[0].revents & ~POLLOUT) != 0) receive();
  }

  void send() {
    while (!conversation_.unsent().empty() && !cannotSend_) {
      const std::string_view bytes = conversation_.unsent();
      const ssize_t count = SocketPlatform::writeToSocket(server_.get(), bytes.data(), bytes.size());
      if (count >= 0) {
        conversation_.sent(static_cast<std::size_t>(count));
      } else if (errno != EINTR) {
        // What a server said before it hung up is still to be read.
        if (errno != EAGAIN) cannotSend_ = true;
        return;
      }
    }
  }

  void receive() {
    const std::span<char> space = conversation_.space();
    // Descriptors that may come along are not asked for; the system closes them.
    const ssize_t count = ::recv(server_.get(), space.data(), space.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count <= 0) return lose("the server hung up in the middle");
    try {
      conversation_.received(static_cast<std::size_t>(count));
    } catch (const TmuxUnexpected& unexpected) {
      lose(unexpected.what());
    }
  }

  void breakOff(End end) {
    conversation_.answer().end = end;
    broken_ = true;
  }

  /// As the program says it.
  void lose(const char* why) {
    TmuxAnswer& answer = conversation_.answer();
    answer.exitStatus = 1;
    answer.errorOutput += "server exited unexpectedly\n";
    surprise_ = why;
    breakOff(End::exited);
  }

  const FileDescriptor& server_;
  const FileDescriptor& cancel_;
  const std::chrono::steady_clock::time_point deadline_;
  const std::function<void()>& meanwhile_;
  TmuxConversation conversation_;
  std::optional<std::string> surprise_;
  bool cannotSend_ = false;
  bool broken_ = false;
};

}  // namespace

TmuxExchangeResult exchangeWithTmux(const FileDescriptor& server, const FileDescriptor& cancel,
                                    const TmuxInvocation& invocation, const TmuxClientIdentity& identity) {
  return Exchange(server, cancel, invocation, identity).run();
}

}  // namespace velmora
