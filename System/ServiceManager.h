// The service manager that started the process, if one did and listens.
#pragma once

#include "System/Environment.h"

namespace velmora {

/// Tells it that the service is ready, by a datagram to the socket that `NOTIFY_SOCKET` names, see
/// sd_notify(3); does nothing when none is named. Never waits. Throws std::system_error when the datagram
/// cannot be sent. Any thread.
void tellServiceIsReady(const Environment& environment);

}  // namespace velmora
