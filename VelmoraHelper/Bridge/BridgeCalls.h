// The calls to the application that are under way at the same time.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "VelmoraHelper/Bridge/BridgeConnection.h"
#include "VelmoraHelper/Bridge/BridgeMessages.h"

namespace velmora {

using SteadyTime = std::chrono::steady_clock::time_point;

/// Runs every call on a connection of its own and never blocks: its owner waits for the descriptors and then
/// calls `advance`. One connection is kept open between calls. The application's queue of connections is
/// short; a call that finds it full waits for its turn. Calls that change the same session run one after
/// another in the order in which they were started; all others may overtake each other. Not thread-safe.
class BridgeCalls {
 public:
  using Id = std::uint64_t;
  using Done = std::function<void(BridgeAnswer)>;

  /// Hears the terminal's last line while a call that asks for progress waits; must not start or stop calls.
  using Hear = std::function<void(std::string lastLine)>;

  /// A connection to the application whose descriptor does not block. Throws UnixSocketError.
  using Connecting = std::function<UnixSocketConnection()>;

  struct Limits {
    std::size_t running = 16;    ///< Connections in use at once.
    std::size_t waiting = 1000;  ///< Calls that wait for one; a further call is refused.
    /// How long a call may take. Clients give up after 60 seconds or more, with a worse message than ours.
    std::chrono::seconds deadline{50};
    /// A call that fails after this long met a terminal that hangs, for which the application waits as long.
    /// Those that wait behind it to change the same session would meet it too: they are refused unsent.
    std::chrono::seconds hanging{5};
    /// A call that waits for what it has started keeps others from its session this long, in which its input
    /// is delivered; then they may interrupt what it waits for.
    std::chrono::seconds keepsLane{1};
    /// How soon to knock again when the application's queue of connections was full.
    std::chrono::milliseconds knockAgain{5};
    /// For how long, where the system does not tell a full queue from an application that has ended.
    std::chrono::seconds knockWhenUnsure{2};
  };

  explicit BridgeCalls(Connecting connect) : BridgeCalls(std::move(connect), Limits{}) {}
  BridgeCalls(Connecting connect, Limits limits) : connect_(std::move(connect)), limits_(limits) {}

  /// Starts a call. `done` is called once, by a later `advance`, with the application's answer or with one
  /// that says what went wrong; it may start further calls.
  Id start(BridgeRequest request, Done done, SteadyTime now, Hear hear = {});

  /// Stops waiting for a call and forgets it: `done` is not called any more. Without effect when it has
  /// ended.
  void cancel(Id id);

  /// Does everything that can be done without waiting.
  void advance(SteadyTime now);

  bool isEmpty() const { return calls_.empty(); }

  struct Awaited {
    int descriptor;
    bool writing;  ///< Wait until it can be written to as well, not only until it can be read.
  };

  /// What to wait for until the next `advance`.
  std::vector<Awaited> awaited() const;
  std::optional<SteadyTime> nextDeadline() const;

 private:
  struct Call {
    Id id;
    BridgeRequest request;
    Done done;
    Hear hear;
    SteadyTime deadline;
    SteadyTime begun{};
    std::optional<BridgeConnection> connection{};
    bool isSecondUse = false;  // of a connection that was kept
    bool laneIsFree = false;   // others were told that they may begin
    std::optional<SteadyTime> crowdedSince{};
  };
  using Calls = std::list<Call>;

  bool finishSome(SteadyTime now);
  void refuseThoseBehind(const Call& call, SteadyTime now);
  bool mayBegin(const Call& call, SteadyTime now) const;
  bool keepsLane(const Call& call, SteadyTime now) const;
  void begin(Call& call);
  std::optional<BridgeAnswer> step(Call& call, SteadyTime now);
  std::optional<BridgeAnswer> recover(Call& call, std::exception_ptr failure, SteadyTime now);
  bool knocksAgain(Call& call, const std::exception_ptr& failure, SteadyTime now);
  BridgeAnswer answerToLateness(const Call& call) const;

  Connecting connect_;
  Limits limits_;
  Calls calls_{};  // in the order in which they were started
  std::optional<BridgeConnection> kept_{};
  Id lastId_ = 0;
  std::optional<SteadyTime> nextKnock_{};  // the queue was full; no call connects before this
};

}  // namespace velmora
