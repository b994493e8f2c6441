// What a client is told when the application cannot be reached or does not answer: always an answer with an
// error that says what to do next, for the agent and for the user.
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

}  // namespace velmora
