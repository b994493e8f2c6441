// What a choice of the user's means for the sessions that are known already.
#pragma once

#include "BridgeCore/BridgeCoordinator.h"

namespace velmora {

/// Whether clients may type into a session that they did not open themselves.
bool mayBeTypedInto(const TerminalSession& session);

/// The policy that the user chose for the first time holds for what was listed before, too; what they blocked
/// in an earlier run stays blocked. Any thread.
void meetKnownSessions(BridgeCoordinator& core, SessionPolicy policy);

/// Makes read-only what mayBeTypedInto. A session that closed meanwhile is passed over. Any thread.
void makeKnownSessionsReadOnly(BridgeCoordinator& core);

}  // namespace velmora
