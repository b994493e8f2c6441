#include "LocalControl/LocalControlServer.h"

#include <exception>
#include <optional>
#include <system_error>

#include "LocalControl/LocalControlCodec.h"
#include "System/ThreadName.h"

namespace velmora {

LocalControlServer::LocalControlServer(LocalControlHandler handler, std::filesystem::path socketURL, Log log,
                                       AcceptingEnded acceptingEnded)
    : handler_(std::move(handler)),
      log_(std::move(log)),
      acceptingEnded_(std::move(acceptingEnded)),
      server_(std::move(socketURL)),
      stopPipe_(openPipe()) {}

LocalControlServer::~LocalControlServer() {
  stop();
  std::thread last;
  {
    MutexLock lock(mutex_);
    for (auto& served : served_) served.connection.interrupt();
    while (!served_.empty()) allFinished_.wait(lock);
    last = std::move(lastFinished_);
  }
  if (last.joinable()) last.join();
}

void LocalControlServer::start() {
  if (acceptThread_.joinable() || !stopPipe_.write) return;
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
  stopPipe_.write.close();
  if (acceptThread_.joinable()) acceptThread_.join();
}

void LocalControlServer::acceptConnections() {
  std::string reason;
  try {
    while (auto connection = server_.acceptConnectionUntil(stopPipe_.read.get())) {
      beginServing(std::move(*connection));
    }
  } catch (const UnixSocketError& error) {
    reason = error.inWords();  // accepting ends here on purpose, see the class's comment
  }
  server_.close();
  accepting_ = false;
  if (reason.empty()) return;
  log_.error("socket", "accepting has ended until the bridge starts again: " + reason);
  if (acceptingEnded_) acceptingEnded_(reason);
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
    while (true) {
      failure = noRequest;
      const auto frame = connection.readFrame();
      const auto request = LocalControlCodec::payload(frame);
      failure = "its request could not be answered";
      connection.writeFrame(LocalControlCodec::frameOfPayload(handler_(request)));
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
  }
  allFinished_.notify_one();
  if (previous.joinable()) previous.join();
}

}  // namespace velmora
