// The words of an answer, where those of the control channel would mislead whoever reads them.
#pragma once

#include "VelmoraHelper/Bridge/BridgeMessages.h"

namespace velmora {

/// `answer` unchanged but for its words on four matters:
/// - another version of the channel: says so, instead of blaming the request;
/// - a record that could not be saved, of a call that changed the terminal: says that the call took effect,
///   and asks nobody to retry;
/// - a busy session: says when waiting helps and when it does not;
/// - output that was cut: says it briefly, because it comes with every long read.
BridgeAnswer explained(const BridgeRequest& request, BridgeAnswer answer);

}  // namespace velmora
