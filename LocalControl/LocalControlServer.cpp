#include "LocalControl/LocalControlServer.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketClient.h"
#include "System/DescriptorLimit.h"
#include "System/Memory.h"
#include "System/SocketPlatform.h"
#include "System/ThreadName.h"

namespace velmora {

namespace {

// Those of the threads that speak to the terminal, and of files.
constexpr std::size_t descriptorsForTheRest = 64;

std::size_t roomFor(std::size_t descriptors) {
  return std::max(descriptors - std::min(descriptors, descriptorsForTheRest), descriptors / 2);
}

// Whether the peer has left is found out anyway.
void send(const std::string& message, UnixSocketConnection& connection) {
  try {
    connection.writeFrame(LocalControlCodec::frameOfPayload(message));
  } catch (const UnixSocketError&) {
  } catch (const LocalControlCodecError&) {
  }
}

}  // namespace

LocalControlServer::LocalControlServer(LocalControlHandler handler, const std::filesystem::path& socketURL,
                                       LocalControlServerOptions options)
    : LocalControlServer(LocalControlHandlerMaker([handler = std::move(handler)](auto) { return handler; }),
                         socketURL, std::move(options)) {}

LocalControlServer::LocalControlServer(LocalControlHandlerMaker makeHandler,
                                       const std::filesystem::path& socketURL,
                                       LocalControlServerOptions options)
    : makeHandler_(std::move(makeHandler)),
      options_(std::move(options)),
      log_(options_.log),
      server_(std::make_unique<UnixSocketServer>(socketURL)),
      mostConnections_(options_.mostConnections.value_or(roomFor(descriptorLimit()))),
      socketURL_(socketURL) {
  auto [read, write] = openPipe();
  setNonBlocking(read);
  setNonBlocking(write);
  woken_ = std::move(read);
  wake_ = std::move(write);
}

LocalControlServer::~LocalControlServer() {
  constexpr std::chrono::milliseconds graceForAnswers{500};
  finish(graceForAnswers);
  std::thread last;
  {
    MutexLock lock(mutex_);
    for (auto& served : served_) served.connection.interrupt();
    while (!served_.empty()) allFinished_.wait(lock);
    last = std::move(lastFinished_);
  }
  if (last.joinable()) last.join();
}

void LocalControlServer::finish(std::chrono::milliseconds patience) noexcept {
  stop();
  finishing_ = true;
  const auto end = std::chrono::steady_clock::now() + patience;
  MutexLock lock(mutex_);
  for (auto& served : served_) served.connection.endReading();
  while (!served_.empty() && allFinished_.wait_until(lock, end) != std::cv_status::timeout) continue;
}

void LocalControlServer::start() {
  if (acceptThread_.joinable()) return;
  {
    const MutexLock lock(mutex_);
    if (!wake_) return;
  }
  accepting_ = true;
  try {
    acceptThread_ = std::thread([this] {
      setThreadName("accept");
      acceptConnections();
    });
  } catch (const std::system_error&) {
    accepting_ = false;
    throw;
  }
}

void LocalControlServer::stop() noexcept {
  {
    const MutexLock lock(mutex_);
    wake_.close();
  }
  if (acceptThread_.joinable()) acceptThread_.join();
}

void LocalControlServer::acceptConnections() {
  std::string reason;
  try {
    auto nextLook = std::chrono::steady_clock::now() + options_.lookEvery;
    while (waitForWork(nextLook)) {
      if (auto connection = hasRoom() ? server_->acceptWaiting() : std::nullopt) {
        beginServing(std::move(*connection));
        continue;  // whoever waits found the socket
      }
      if (std::chrono::steady_clock::now() < nextLook) continue;
      keepInPlace();
      tidy();
      nextLook = std::chrono::steady_clock::now() + options_.lookEvery;
    }
  } catch (const UnixSocketError& error) {
    reason = error.inWords();  // accepting ends here on purpose, see the class's comment
  }
  server_->close();
  accepting_ = false;
  if (reason.empty()) return;
  log_.error("socket", "accepting has ended until the bridge starts again: " + reason);
  if (options_.acceptingEnded) options_.acceptingEnded(reason);
}

// Blocks until a connection waits that there is room for, or the time has come; false when accepting is to
// stop.
bool LocalControlServer::waitForWork(std::chrono::steady_clock::time_point until) {
  std::array<pollfd, 2> watched{pollfd{hasRoom() ? server_->descriptor() : -1, POLLIN, 0},
                                pollfd{woken_.get(), POLLIN, 0}};
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
  const auto timeout = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
  if (::poll(watched.data(), watched.size(), timeout) < 0 && errno != EINTR)
    throw UnixSocketError::system("accept", errno);
  std::array<char, 64> wakes{};
  return watched[1].revents == 0 || ::read(woken_.get(), wakes.data(), wakes.size()) != 0;
}

bool LocalControlServer::hasRoom() {
  const MutexLock lock(mutex_);
  return served_.size() < mostConnections_;
}

// Large requests leave much memory behind, which the allocator would keep.
void LocalControlServer::tidy() {
  {
    const MutexLock lock(mutex_);
    if (isTidy_ || !served_.empty()) return;
    isTidy_ = true;
  }
  returnFreeMemory();
}

// What cannot be done now is tried again at the next look; each reason is said once.
void LocalControlServer::keepInPlace() {
  const auto place = options_.place ? options_.place() : server_->socketURL();
  std::string complaint;
  if (place != server_->socketURL() || !server_->isInPlace()) {
    try {
      moveTo(place);
    } catch (const UnixSocketError& error) {
      complaint = error.inWords();
    } catch (const std::exception& error) {
      complaint = error.what();
    }
  }
  if (!complaint.empty() && complaint != complaint_)
    log_.error("socket", "clients cannot find the bridge at " + place.string() + ": " + complaint);
  complaint_ = complaint;
}

void LocalControlServer::moveTo(const std::filesystem::path& place) {
  if (UnixSocketClient::isAnswering(place)) throw std::runtime_error("another bridge answers there");
  auto moved = std::make_unique<UnixSocketServer>(place);
  log_.warning("socket",
               (server_->isInPlace() ? "the place for sockets has changed" : "the socket had gone") +
                   std::string("; serving at ") + place.string());
  server_ = std::move(moved);
  const MutexLock lock(mutex_);
  socketURL_ = place;
}

std::filesystem::path LocalControlServer::socketURL() const {
  const MutexLock lock(mutex_);
  return socketURL_;
}

void LocalControlServer::beginServing(UnixSocketConnection connection) {
  const MutexLock lock(mutex_);
  std::optional<ServedList::iterator> position;
  try {
    position = served_.emplace(served_.end(), std::move(connection));
    // The thread looks at its own entry's `thread` only in finishServing, under the lock held here.
    (*position)->thread = std::thread([this, served = *position] {
      setThreadName("connection");
      answerRequests(served->connection);
      finishServing(served);
    });
  } catch (const std::exception&) {
    // No thread or no memory for one: this client is turned away, the others stay.
    if (position) served_.erase(*position);
    log_.warning("socket", "a client was turned away: there is no thread for it");
  }
}

// Until the peer leaves or sends what is no request; the connection ends without an answer then.
void LocalControlServer::answerRequests(UnixSocketConnection& connection) const {
  constexpr const char* noRequest = "what it sent is no request";
  const char* failure = noRequest;
  try {
    const auto handler = makeHandler_(SocketPlatform::peerProcess(connection.descriptor()));
    while (!finishing_) {
      failure = noRequest;
      const auto frame = connection.readFrame();
      const Caller caller{.hasLeft = [&connection] { return connection.peerHasLeft(); },
                          .send = [&connection](const std::string& message) { send(message, connection); }};
      const auto request = LocalControlCodec::payload(frame);
      failure = "its request could not be answered";
      connection.writeFrame(LocalControlCodec::frameOfPayload(handler(request, caller)));
    }
  } catch (const UnixSocketError& error) {
    log_.debug("socket", "a connection has ended: " + error.inWords());
  } catch (const LocalControlCodecError& error) {
    log_.warning("socket", std::string("a connection was closed: ") + failure + " (" + error.what() + ")");
  } catch (const JsonDecodeError&) {  // its words may quote the request, as those of any other may
    log_.warning("socket", std::string("a connection was closed: ") + noRequest);
  } catch (const std::exception&) {
    log_.warning("socket", std::string("a connection was closed: ") + failure);
  }
}

// Each thread joins the one that finished before it, so that at most one finished thread is ever left over
// and destruction, which joins the last, has joined them all.
void LocalControlServer::finishServing(ServedList::iterator position) {
  ServedList finished;
  std::thread previous;
  {
    const MutexLock lock(mutex_);
    finished.splice(finished.end(), served_, position);
    previous = std::exchange(lastFinished_, std::move(finished.front().thread));
    isTidy_ = false;
    if (served_.size() + 1 == mostConnections_) [[maybe_unused]]
      const auto written = ::write(wake_.get(), "x", 1);  // there is room again
  }
  allFinished_.notify_one();
  if (previous.joinable()) previous.join();
}

}  // namespace velmora
