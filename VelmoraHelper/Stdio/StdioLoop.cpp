#include "VelmoraHelper/Stdio/StdioLoop.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <vector>

#include "VelmoraHelper/Stdio/MessageLines.h"

namespace velmora {

namespace {

SteadyTime now() { return std::chrono::steady_clock::now(); }

class StdioLoop {
 public:
  StdioLoop(int input, MessageOutput& output, McpServer& server, BridgeCalls& calls)
      : input_(input), output_(output), server_(server), calls_(calls) {}

  void run(const std::function<bool()>& clientIsGone) {
    while (!isDone() && !clientIsGone()) {
      if (waitForInput()) readSome();
      do {
        takeLines();
        calls_.advance(now());
        server_.sendProgress(now());
        flush();
      } while (linesWait_ && hasRoom());
    }
  }

 private:
  bool isDone() const {
    if (inputEnded_ && calls_.isEmpty() && output_.pending() == 0) return true;
    return lastUse_ && now() >= *lastUse_ + graceAfterInput;
  }

  bool hasRoom() const { return output_.pending() < maximumUnreadBytes; }
  bool takesInput() const { return !inputEnded_ && !linesWait_ && hasRoom(); }

  // Waits until there is something to do. Returns whether there is input to read.
  bool waitForInput() {
    descriptors_.clear();
    // Watch for hang-up even while we read nothing; poll() ignores a negative descriptor.
    const bool watched = takesInput() || (!inputEnded_ && !lastUse_);
    const auto whenReadable = static_cast<short>(takesInput() ? POLLIN : 0);
    descriptors_.push_back({.fd = watched ? input_ : -1, .events = whenReadable, .revents = 0});
    const auto whenWritable = static_cast<short>(output_.pending() > 0 ? POLLOUT : 0);
    descriptors_.push_back({.fd = output_.descriptor(), .events = whenWritable, .revents = 0});
    for (const auto& [descriptor, writing] : calls_.awaited()) {
      const auto whenReady = static_cast<short>(POLLIN | (writing ? POLLOUT : 0));
      descriptors_.push_back({.fd = descriptor, .events = whenReady, .revents = 0});
    }
    if (::poll(descriptors_.data(), static_cast<nfds_t>(descriptors_.size()), timeout()) < 0) {
      if (errno == EINTR) return false;
      throw std::system_error(errno, std::generic_category(), "poll");
    }
    if ((descriptors_[1].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
      throw std::system_error(EPIPE, std::generic_category(), "write");
    }
    if ((descriptors_[0].revents & POLLHUP) != 0 && !lastUse_) lastUse_ = now();
    return takesInput() && descriptors_[0].revents != 0;
  }

  // Milliseconds until the next thing that no descriptor announces.
  int timeout() const {
    auto due = now() + clientCheckInterval;
    for (const auto& time : {calls_.nextDeadline(), server_.nextProgress()}) {
      due = std::min(due, time.value_or(due));
    }
    if (lastUse_) due = std::min(due, *lastUse_ + graceAfterInput);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(due - now()).count();
    return static_cast<int>(std::max<decltype(left)>(left, 0));
  }

  void readSome() {
    const auto count = ::read(input_, buffer_.data(), buffer_.size());
    if (count < 0) {
      if (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK) return;
      throw std::system_error(errno, std::generic_category(), "read");
    }
    inputEnded_ = count == 0;
    if (inputEnded_) {
      lines_.finish();
    } else {
      lines_.feed({buffer_.data(), static_cast<std::size_t>(count)});
    }
    if (inputEnded_ || lastUse_) lastUse_ = now();
  }

  void takeLines() {
    linesWait_ = true;
    while (hasRoom()) {
      const auto line = lines_.next();
      if (!line) {
        linesWait_ = false;
        return;
      }
      if (line->tooLong) {
        server_.receiveTooLongLine(line->text, line->end);
      } else {
        server_.receive(line->text, now());
      }
    }
  }

  void flush() {
    const auto before = output_.pending();
    output_.flush();
    if (lastUse_ && output_.pending() < before) lastUse_ = now();
  }

  const int input_;
  MessageOutput& output_;
  McpServer& server_;
  BridgeCalls& calls_;
  MessageLines lines_{maximumMessageBytes};
  std::array<char, 65536> buffer_{};
  std::vector<pollfd> descriptors_{};
  bool linesWait_ = false;   // there may be lines that were read but not taken, for lack of room
  bool inputEnded_ = false;  // and all of it was read
  // When a client has closed the input: the last time since then that something was read or written.
  std::optional<SteadyTime> lastUse_{};
};

}  // namespace

void serveLines(int input, MessageOutput& output, McpServer& server, BridgeCalls& calls,
                const std::function<bool()>& clientIsGone) {
  StdioLoop(input, output, server, calls).run(clientIsGone);
}

}  // namespace velmora
