#include "VelmoraHelper/Bridge/BridgeCalls.h"

#include <algorithm>
#include <cerrno>

#include "BridgeModels/Tools.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketError.h"
#include "System/SocketPlatform.h"
#include "VelmoraHelper/Bridge/AnswerWords.h"
#include "VelmoraHelper/Bridge/CallFailure.h"

namespace velmora {

namespace {

// What became of a call whose connection failed.
enum class Fate {
  notSent,  // the application cannot have read the whole request
  unknown,  // it was sent, and the stream ended before the answer
  settled,  // nothing that sending it again would change
};

Fate fateOf(const BridgeConnection& connection, const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const UnixSocketError& error) {
    if (connection.isWriting()) return Fate::notSent;
    // The system reports this when the peer closed its end with unread data in it.
    if (error == UnixSocketError::system("read", ECONNRESET)) return Fate::notSent;
    return error == UnixSocketError::disconnected() ? Fate::unknown : Fate::settled;
  } catch (const std::exception&) {
    return Fate::settled;
  }
}

SocketPlatform::ListenerQueue queueOf(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const UnixSocketError& error) {
    if (error.kind() == UnixSocketError::Kind::system && error.operation() == "connect")
      return SocketPlatform::listenerQueue(error.code());
  } catch (const std::exception&) {
    // Not a matter of connecting.
  }
  return SocketPlatform::ListenerQueue::other;
}

}  // namespace

BridgeCalls::Id BridgeCalls::start(BridgeRequest request, Done done, SteadyTime now, Hear hear) {
  const bool crowded = calls_.size() >= limits_.running + limits_.waiting;
  calls_.push_back({.id = ++lastId_,
                    .request = std::move(request),
                    .done = std::move(done),
                    .hear = std::move(hear),
                    .deadline = crowded ? now : now + limits_.deadline});
  return lastId_;
}

void BridgeCalls::cancel(Id id) {
  calls_.remove_if([id](const Call& call) { return call.id == id; });
}

void BridgeCalls::advance(SteadyTime now) {
  if (nextKnock_ && now >= *nextKnock_) nextKnock_.reset();
  for (auto& call : calls_) call.laneIsFree = !keepsLane(call, now);
  while (finishSome(now)) {  // a call that ends may make room for a waiting one
  }
}

bool BridgeCalls::finishSome(SteadyTime now) {
  std::vector<std::pair<Done, BridgeAnswer>> finished;
  for (auto call = calls_.begin(); call != calls_.end();) {
    std::optional<BridgeAnswer> answer;
    const bool isDue = now >= call->deadline;
    if (call->connection || (!isDue && mayBegin(*call, now))) answer = step(*call, now);
    const bool isAnswered = answer.has_value();
    if (!isAnswered && isDue) answer = answerToLateness(*call);
    if (answer && !answer->result.ok && now - call->begun >= limits_.hanging) refuseThoseBehind(*call, now);
    if (isAnswered && call->connection) kept_ = std::move(call->connection);
    if (answer) {
      finished.emplace_back(std::move(call->done), std::move(*answer));
      call = calls_.erase(call);
    } else {
      ++call;
    }
  }
  for (auto& [done, answer] : finished) done(std::move(answer));
  return !finished.empty();
}

BridgeAnswer BridgeCalls::answerToLateness(const Call& call) const {
  if (call.connection) return answerToSilence(call.request, limits_.deadline);
  if (!call.crowdedSince) return answerToCrowding(call.request);
  return answerToFailure(call.request, std::make_exception_ptr(UnixSocketError::system("connect", EAGAIN)));
}

void BridgeCalls::refuseThoseBehind(const Call& call, SteadyTime now) {
  if (call.request.lane.empty() || call.request.waits || !call.connection) return;
  for (auto& other : calls_) {
    if (other.request.lane == call.request.lane && !other.connection) other.deadline = now;
  }
}

bool BridgeCalls::keepsLane(const Call& call, SteadyTime now) const {
  return !call.request.waits || !call.connection || now - call.begun < limits_.keepsLane;
}

bool BridgeCalls::mayBegin(const Call& call, SteadyTime now) const {
  if (nextKnock_) return false;
  std::size_t running = 0;
  for (const auto& other : calls_) {
    if (&other == &call) break;
    if (!call.request.lane.empty() && other.request.lane == call.request.lane && keepsLane(other, now))
      return false;
  }
  for (const auto& other : calls_) running += other.connection ? 1u : 0u;
  return running < limits_.running;
}

void BridgeCalls::begin(Call& call) {
  auto frame = LocalControlCodec::frameOfPayload(call.request.payload);
  call.isSecondUse = kept_ && kept_->isReady();
  call.connection = call.isSecondUse ? std::move(kept_) : BridgeConnection(connect_());
  kept_.reset();
  call.connection->begin(std::move(frame));
}

// The answer, or nothing while it is still to come.
std::optional<BridgeAnswer> BridgeCalls::step(Call& call, SteadyTime now) {
  try {
    if (!call.connection) {
      begin(call);
      call.begun = now;
    }
    auto frame = call.connection->advance();
    for (; frame && call.request.asksForProgress; frame = call.connection->advance()) {
      auto lastLine = lastLineIn(*frame);
      if (!lastLine) break;
      if (call.hear) call.hear(std::move(*lastLine));
    }
    if (!frame) return std::nullopt;
    BridgeAnswer answer(*frame);
    if (answer.result.requestId != call.request.id) {
      throw LocalControlCodecError(LocalControlCodecError::invalidFrame);
    }
    return explained(call.request, std::move(answer));
  } catch (const std::exception&) {
    return recover(call, std::current_exception(), now);
  }
}

// The application may have ended since the previous call, just as this one was sent on the same connection.
// Send it again if that cannot make it take effect twice.
std::optional<BridgeAnswer> BridgeCalls::recover(Call& call, std::exception_ptr failure, SteadyTime now) {
  if (!call.connection && knocksAgain(call, failure, now)) return std::nullopt;
  const auto fate = call.connection && call.isSecondUse ? fateOf(*call.connection, failure) : Fate::settled;
  call.connection.reset();
  const bool mayRepeat =
      fate == Fate::notSent || (fate == Fate::unknown && !toolTraits(call.request.tool).changesTerminal);
  if (!mayRepeat) return answerToFailure(call.request, std::move(failure));
  return step(call, now);
}

// One call knocks at a time: it keeps its place, and the others wait behind it.
bool BridgeCalls::knocksAgain(Call& call, const std::exception_ptr& failure, SteadyTime now) {
  const auto queue = queueOf(failure);
  if (queue == SocketPlatform::ListenerQueue::other) return false;
  if (!call.crowdedSince) call.crowdedSince = now;
  if (queue == SocketPlatform::ListenerQueue::fullOrGone &&
      now - *call.crowdedSince >= limits_.knockWhenUnsure) {
    return false;
  }
  nextKnock_ = now + limits_.knockAgain;
  return true;
}

std::vector<BridgeCalls::Awaited> BridgeCalls::awaited() const {
  std::vector<Awaited> result;
  for (const auto& call : calls_) {
    if (call.connection) result.push_back({call.connection->descriptor(), call.connection->isWriting()});
  }
  return result;
}

std::optional<SteadyTime> BridgeCalls::nextDeadline() const {
  std::optional<SteadyTime> next = nextKnock_;
  for (const auto& call : calls_) {
    if (!next || call.deadline < *next) next = call.deadline;
    if (call.request.waits && call.connection && !call.laneIsFree) {
      next = std::min(*next, call.begun + limits_.keepsLane);
    }
  }
  return next;
}

}  // namespace velmora
