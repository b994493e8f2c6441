#include "VelmoraHelper/Bridge/BridgeCalls.h"

#include <algorithm>
#include <cctype>
#include <cerrno>

#include "BridgeModels/Tools.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketError.h"
#include "VelmoraHelper/Bridge/CallFailure.h"

namespace velmora {

namespace {

// The session that a request changes, in one spelling.
std::string laneOf(const LocalControlRequest& request) {
  const auto session = request.arguments.find("sessionId");
  if (!toolTraits(request.operation).changesTerminal || session == request.arguments.end()) return {};
  const auto* text = session->second.string();
  std::string lane = text == nullptr ? std::string() : *text;
  for (auto& character : lane)
    character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  return lane;
}

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
    // The system says so when the other end was closed with something in it that was never read.
    if (error == UnixSocketError::system("read", ECONNRESET)) return Fate::notSent;
    return error == UnixSocketError::disconnected() ? Fate::unknown : Fate::settled;
  } catch (const std::exception&) {
    return Fate::settled;
  }
}

}  // namespace

BridgeCalls::Id BridgeCalls::start(LocalControlRequest request, Done done, SteadyTime now) {
  const auto waiting =
      std::count_if(calls_.begin(), calls_.end(), [](const Call& call) { return !call.connection; });
  const bool crowded = static_cast<std::size_t>(waiting) >= limits_.waiting;
  auto lane = laneOf(request);
  calls_.push_back({.id = ++lastId_,
                    .request = std::move(request),
                    .done = std::move(done),
                    .deadline = crowded ? now : now + limits_.deadline,
                    .lane = std::move(lane)});
  return lastId_;
}

void BridgeCalls::cancel(Id id) {
  calls_.remove_if([id](const Call& call) { return call.id == id; });
}

void BridgeCalls::advance(SteadyTime now) {
  while (finishSome(now)) {  // each that ends may make room for one that waits
  }
}

bool BridgeCalls::finishSome(SteadyTime now) {
  std::vector<std::pair<Done, LocalControlResponse>> finished;
  for (auto call = calls_.begin(); call != calls_.end();) {
    std::optional<LocalControlResponse> response;
    const bool isDue = now >= call->deadline;
    if (call->connection || (!isDue && mayBegin(*call))) response = step(*call);
    if (response && call->connection) {
      kept_ = std::move(call->connection);
    } else if (!response && isDue) {
      response = call->connection ? answerToSilence(call->request, limits_.deadline)
                                  : answerToCrowding(call->request);
    }
    if (response) {
      finished.emplace_back(std::move(call->done), std::move(*response));
      call = calls_.erase(call);
    } else {
      ++call;
    }
  }
  for (auto& [done, response] : finished) done(std::move(response));
  return !finished.empty();
}

bool BridgeCalls::mayBegin(const Call& call) const {
  std::size_t running = 0;
  for (const auto& other : calls_) {
    if (&other == &call) break;
    if (!call.lane.empty() && other.lane == call.lane) return false;
  }
  for (const auto& other : calls_) running += other.connection ? 1u : 0u;
  return running < limits_.running;
}

void BridgeCalls::begin(Call& call) {
  auto frame = LocalControlCodec::frame(call.request);
  call.isSecondUse = kept_ && kept_->isReady();
  call.connection = call.isSecondUse ? std::move(kept_) : BridgeConnection(connect_());
  kept_.reset();
  call.connection->begin(std::move(frame));
}

// The answer, or nothing while it is still to come. A call without a connection afterwards cannot be kept up.
std::optional<LocalControlResponse> BridgeCalls::step(Call& call) {
  try {
    if (!call.connection) begin(call);
    const auto frame = call.connection->advance();
    if (!frame) return std::nullopt;
    auto response = LocalControlCodec::decode<LocalControlResponse>(*frame);
    if (response.requestId != call.request.requestId) {
      throw LocalControlCodecError(LocalControlCodecError::invalidFrame);
    }
    return explained(call.request, std::move(response));
  } catch (const std::exception&) {
    return recover(call, std::current_exception());
  }
}

// The application may have ended since the call before, just when this one was sent on the same connection.
// It is sent once more when that cannot make it take effect twice.
std::optional<LocalControlResponse> BridgeCalls::recover(Call& call, std::exception_ptr failure) {
  const auto fate = call.connection && call.isSecondUse ? fateOf(*call.connection, failure) : Fate::settled;
  call.connection.reset();
  const bool mayRepeat =
      fate == Fate::notSent || (fate == Fate::unknown && !toolTraits(call.request.operation).changesTerminal);
  if (!mayRepeat) return answerToFailure(call.request, std::move(failure));
  return step(call);
}

std::vector<BridgeCalls::Awaited> BridgeCalls::awaited() const {
  std::vector<Awaited> result;
  for (const auto& call : calls_) {
    if (call.connection) result.push_back({call.connection->descriptor(), call.connection->isWriting()});
  }
  return result;
}

std::optional<SteadyTime> BridgeCalls::nextDeadline() const {
  std::optional<SteadyTime> next;
  for (const auto& call : calls_) {
    if (!next || call.deadline < *next) next = call.deadline;
  }
  return next;
}

}  // namespace velmora
