// The application's end of the channel: accepts helpers and answers their requests.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "BridgeModels/Caller.h"
#include "LocalControl/UnixSocketServer.h"
#include "System/FileDescriptor.h"
#include "System/Log.h"
#include "System/Mutex.h"

namespace velmora {

/// Answers a request of `caller` with its response, both as JSON text. Called from many threads at once. What
/// it throws ends the connection: JsonDecodeError says that the text is no request.
using LocalControlHandler = std::function<std::string(std::string_view request, const Caller& caller)>;

/// Makes what answers the requests of one connection, in turn; `peer` is the process that connected, when the
/// system tells. Called on the connection's thread.
using LocalControlHandlerMaker = std::function<LocalControlHandler(std::optional<pid_t> peer)>;

/// Hears why accepting ended by itself, in a few words. Called once at most, on the accept thread; must not
/// throw, and must not end the server.
using AcceptingEnded = std::function<void(const std::string& reason)>;

struct LocalControlServerOptions {
  Log log{};
  AcceptingEnded acceptingEnded{};
  /// Where the socket belongs by now; asked from time to time, on the accept thread. Absent: where it was
  /// made.
  std::function<std::filesystem::path()> place{};
  /// How often the accept thread looks whether clients still find the socket.
  std::chrono::milliseconds lookEvery{2'000};
  /// How many connections are served at once; further ones wait in the queue. Absent: as many as leave
  /// descriptors for everything else, so that accepting does not end for want of one.
  std::optional<std::size_t> mostConnections{};
};

/// One thread accepts; one thread a connection reads a request, has it answered, writes the response, and so
/// on until the peer leaves. Whatever is wrong with a frame, a request or the stream ends that connection
/// without an answer and touches no other; the log says so, without a word of what the frame held.
///
/// The socket listens from construction on; connections wait there until `start`. A failing accept or a peer
/// of another user ends accepting for good (better no service than a doubtful one): the socket is closed, so
/// that clients hear at once that nobody serves them; connections that are being served go on. The log and
/// `acceptingEnded` hear why.
///
/// The socket's file can vanish, with its folder or alone, and the folder where it belongs can appear late.
/// The server then listens anew, at the place where the socket belongs by now, and says so in the log; it
/// never takes a place at which another server answers.
///
/// Destruction reads no further request, gives those under way a short time to be answered, then ends the
/// connections and joins every thread; the handler must come to an end.
///
/// `start`, `stop` and destruction belong to one thread, which is none of the handler's.
class LocalControlServer {
 public:
  /// Throws what UnixSocketServer's constructor throws, and std::system_error.
  LocalControlServer(LocalControlHandlerMaker makeHandler, const std::filesystem::path& socketURL,
                     LocalControlServerOptions options = {});
  /// One handler answers on every connection.
  LocalControlServer(LocalControlHandler handler, const std::filesystem::path& socketURL,
                     LocalControlServerOptions options = {});
  ~LocalControlServer();
  LocalControlServer(const LocalControlServer&) = delete;
  LocalControlServer& operator=(const LocalControlServer&) = delete;

  /// Begins to accept; only the first call counts. Throws std::system_error when the system has no thread to
  /// give; the server can be started later then.
  void start();

  /// Accepts no more, for good; connections that are being served go on.
  void stop() noexcept;

  /// Stops, reads no further request, and waits until those under way are answered, for as long as `patience`
  /// allows.
  void finish(std::chrono::milliseconds patience) noexcept;

  /// False before `start`, after `stop`, and when accepting has ended by itself. Any thread.
  bool isAccepting() const noexcept { return accepting_; }

  /// Where the socket is now. Any thread.
  std::filesystem::path socketURL() const;

 private:
  struct Served {
    explicit Served(UnixSocketConnection accepted) : connection(std::move(accepted)) {}
    UnixSocketConnection connection;
    std::thread thread{};
  };
  using ServedList = std::list<Served>;

  void acceptConnections();
  bool waitForWork(std::chrono::steady_clock::time_point until);
  bool hasRoom();
  void tidy();
  void keepInPlace();
  void moveTo(const std::filesystem::path& place);
  void beginServing(UnixSocketConnection connection);
  void answerRequests(UnixSocketConnection& connection) const;
  void finishServing(ServedList::iterator position);

  const LocalControlHandlerMaker makeHandler_;
  const LocalControlServerOptions options_;
  const Log& log_;
  std::unique_ptr<UnixSocketServer> server_;  // once started, the accept thread's
  std::string complaint_{};                   // why the socket is not in its place; the accept thread's
  const std::size_t mostConnections_;
  FileDescriptor woken_;  // readable when the accept thread has to look up
  std::thread acceptThread_;
  std::atomic<bool> accepting_ = false;
  std::atomic<bool> finishing_ = false;

  mutable Mutex mutex_;
  std::condition_variable_any allFinished_;
  FileDescriptor wake_ VELMORA_GUARDED_BY(mutex_);  // the writing end; closing it stops the accept thread
  bool isTidy_ VELMORA_GUARDED_BY(mutex_) = true;   // no connection has ended since memory was given back
  std::filesystem::path socketURL_ VELMORA_GUARDED_BY(mutex_);
  ServedList served_ VELMORA_GUARDED_BY(mutex_);
  std::thread lastFinished_ VELMORA_GUARDED_BY(mutex_);  // joined by the next to finish, or by destruction
};

}  // namespace velmora
