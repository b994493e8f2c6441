#include "VelmoraHelper/StdioLoop.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "VelmoraHelper/MessageLines.h"

namespace velmora {

namespace {

// Whether a failed call may be tried again: at once after a signal, or when a descriptor that the client has
// made non-blocking is ready.
bool mayRetry(int descriptor, short readiness) {
  if (errno == EINTR) return true;
  if (errno != EAGAIN && errno != EWOULDBLOCK) return false;
  pollfd waiting{.fd = descriptor, .events = readiness, .revents = 0};
  return ::poll(&waiting, 1, -1) >= 0 || errno == EINTR;
}

std::string_view readSome(int descriptor, std::array<char, 65536>& buffer) {
  while (true) {
    const auto count = ::read(descriptor, buffer.data(), buffer.size());
    if (count >= 0) return {buffer.data(), static_cast<std::size_t>(count)};
    if (!mayRetry(descriptor, POLLIN)) throw std::system_error(errno, std::generic_category(), "read");
  }
}

void writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (!mayRetry(descriptor, POLLOUT)) {
      throw std::system_error(errno, std::generic_category(), "write");
    }
  }
}

void answerLines(MessageLines& lines, int output, McpServer& server) {
  while (const auto line = lines.next()) {
    auto answer = line->tooLong ? McpServer::answerToTooLongLine() : server.answer(line->text);
    if (answer) writeAll(output, answer->append("\n"));
  }
}

}  // namespace

void serveLines(int input, int output, McpServer& server) {
  MessageLines lines(maximumMessageBytes);
  std::array<char, 65536> buffer;
  while (true) {
    const auto bytes = readSome(input, buffer);
    if (bytes.empty()) break;
    lines.feed(bytes);
    answerLines(lines, output, server);
  }
  lines.finish();
  answerLines(lines, output, server);
}

}  // namespace velmora
