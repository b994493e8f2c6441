#include "TerminalAutomation/Tmux/Direct/TmuxDirectClient.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "System/SocketPlatform.h"

namespace velmora {

namespace {

using Reach = TmuxDirectResult::Reach;
using End = TmuxAnswer::End;

TmuxDirectResult ended(End end) { return {.reach = Reach::spoken, .exchange = {.answer = {.end = end}}}; }

}  // namespace

TmuxDirectClient::TmuxDirectClient(std::filesystem::path socket, std::string terminal, std::string homeFolder)
    : socket_(std::move(socket)), terminal_(std::move(terminal)), homeFolder_(std::move(homeFolder)) {}

TmuxDirectResult TmuxDirectClient::ask(const TmuxInvocation& invocation, pid_t server) {
  if (cancelled_) return ended(End::cancelled);
  std::optional<TmuxDirectResult> otherwise;
  const FileDescriptor connection = connect(invocation, otherwise);
  if (otherwise) return std::move(*otherwise);
  if (SocketPlatform::peerUser(connection.get()) != ::geteuid()) return {.reach = Reach::otherUser};
  if (SocketPlatform::peerProcess(connection.get()) != server) return {.reach = Reach::otherServer};
  return {.reach = Reach::spoken,
          .exchange = exchangeWithTmux(connection, cancelPipe_.read, invocation, identity())};
}

void TmuxDirectClient::cancel() noexcept {
  // The byte is never read, so every call sees it.
  if (!cancelled_.exchange(true)) [[maybe_unused]]
    const ssize_t written = ::write(cancelPipe_.write.get(), "x", 1);
}

FileDescriptor TmuxDirectClient::connect(const TmuxInvocation& invocation,
                                         std::optional<TmuxDirectResult>& otherwise) const {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string& path = socket_.native();
  FileDescriptor connection = SocketPlatform::openStreamSocket();
  if (path.size() >= sizeof address.sun_path || !connection) {
    otherwise = {.reach = Reach::noServer};
    return {};
  }
  path.copy(address.sun_path, path.size());
  setNonBlocking(connection);
  while (::connect(connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    pollfd cancelled{cancelPipe_.read.get(), POLLIN, 0};
    if (errno != EAGAIN && errno != EINTR) {
      otherwise = {.reach = Reach::noServer};
    } else if (std::chrono::steady_clock::now() >= invocation.deadline) {
      otherwise = ended(End::timedOut);
    } else if (::poll(&cancelled, 1, /*milliseconds*/ 1) > 0) {
      // Nothing tells when a server that is busy or stopped has room again for those who wait.
      otherwise = ended(End::cancelled);
    }
    if (otherwise) return {};
  }
  return connection;
}

// The folder is looked up as the program does it.
TmuxClientIdentity TmuxDirectClient::identity() const {
  std::error_code error;
  std::string folder = std::filesystem::current_path(error);
  if (error) folder = homeFolder_.empty() ? "/" : homeFolder_;
  return {.process = ::getpid(), .terminal = terminal_, .folder = std::move(folder)};
}

}  // namespace velmora
