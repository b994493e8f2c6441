// The application's end of the channel: accepts helpers and answers their requests.
#pragma once

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <thread>

#include "LocalControl/UnixSocketServer.h"
#include "System/FileDescriptor.h"
#include "System/Log.h"
#include "System/Mutex.h"

namespace velmora {

/// Answers a request with its response, both as JSON text. Called from many threads at once. What it throws
/// ends the connection: JsonDecodeError says that the text is no request.
using LocalControlHandler = std::function<std::string(std::string_view request)>;

/// Hears why accepting ended by itself, in a few words. Called once at most, on the accept thread; must not
/// throw, and must not end the server.
using AcceptingEnded = std::function<void(const std::string& reason)>;

/// One thread accepts; one thread a connection reads a request, has it answered, writes the response, and so
/// on until the peer leaves. Whatever is wrong with a frame, a request or the stream ends that connection
/// without an answer and touches no other; the log says so, without a word of what the frame held.
///
/// The socket listens from construction on; connections wait there until `start`. A failing accept or a peer
/// of another user ends accepting for good (better no service than a doubtful one): the socket is closed, so
/// that clients hear at once that nobody serves them; connections that are being served go on. The log and
/// `acceptingEnded` hear why. Destruction wakes every thread and joins it; it waits for requests that the
/// handler is working on, so the handler must come to an end.
///
/// `start`, `stop` and destruction belong to one thread, which is none of the handler's.
class LocalControlServer {
 public:
  /// Throws what UnixSocketServer's constructor throws, and std::system_error.
  LocalControlServer(LocalControlHandler handler, std::filesystem::path socketURL, Log log = {},
                     AcceptingEnded acceptingEnded = {});
  ~LocalControlServer();
  LocalControlServer(const LocalControlServer&) = delete;
  LocalControlServer& operator=(const LocalControlServer&) = delete;

  /// Begins to accept; only the first call counts. Throws std::system_error when the system has no thread to
  /// give; the server can be started later then.
  void start();

  /// Accepts no more, for good; connections that are being served go on.
  void stop() noexcept;

  /// False before `start`, after `stop`, and when accepting has ended by itself. Any thread.
  bool isAccepting() const noexcept { return accepting_; }

  const std::filesystem::path& socketURL() const noexcept { return server_.socketURL(); }

 private:
  struct Served {
    explicit Served(UnixSocketConnection accepted) : connection(std::move(accepted)) {}
    UnixSocketConnection connection;
    std::thread thread{};
  };
  using ServedList = std::list<Served>;

  void acceptConnections();
  void beginServing(UnixSocketConnection connection);
  void answerRequests(UnixSocketConnection& connection) const;
  void finishServing(ServedList::iterator position);

  const LocalControlHandler handler_;
  const Log log_;
  const AcceptingEnded acceptingEnded_;
  UnixSocketServer server_;
  Pipe stopPipe_;  // closing the writing end stops the accept thread
  std::thread acceptThread_;
  std::atomic<bool> accepting_ = false;

  Mutex mutex_;
  std::condition_variable_any allFinished_;
  ServedList served_ VELMORA_GUARDED_BY(mutex_);
  std::thread lastFinished_ VELMORA_GUARDED_BY(mutex_);  // joined by the next to finish, or by destruction
};

}  // namespace velmora
