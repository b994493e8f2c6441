// What a client is told when the application could not be asked, or did not answer: always an answer with an
// error that says what to do, so that an agent and the person beside it can act on it.
#pragma once

#include <chrono>
#include <exception>

#include "VelmoraHelper/Bridge/BridgeMessages.h"

namespace velmora {

/// The answer to `request` when asking ended with `failure`: UnixSocketError, LocalControlCodecError or
/// JsonDecodeError. Any other exception is thrown again.
BridgeAnswer answerToFailure(const BridgeRequest& request, std::exception_ptr failure);

/// The answer to a request that was sent and not answered in time.
BridgeAnswer answerToSilence(const BridgeRequest& request, std::chrono::seconds waited);

/// The answer to a request that was never sent, because earlier ones kept the application busy.
BridgeAnswer answerToCrowding(const BridgeRequest& request);

/// `answer` as it is, except that an application which speaks another version of the channel is told apart
/// from a request that is wrong.
BridgeAnswer explained(const BridgeRequest& request, BridgeAnswer answer);

}  // namespace velmora
