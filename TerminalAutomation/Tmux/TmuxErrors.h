// What the user and the client read when tmux fails: the bridge's error codes, in words that fit tmux.
// Operation and session are left to the core.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "BridgeModels/StructuredError.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

/// Whether an invocation that did not come to its end may have changed something.
enum class TmuxEffect { none, created, typed };

/// The error of an invocation that failed; nothing when it succeeded. tmux reports some refusals with
/// status 0, so success also means an empty error output.
std::optional<StructuredError> tmuxFailure(const TmuxAnswer& answer, TmuxEffect effect);

/// The server had sessions a moment ago and has none now, or runs without any.
bool saysNoSessions(const TmuxAnswer& answer);

/// The client lost its server in mid-call: it died, or the two programs do not understand each other.
bool saysServerLost(const TmuxAnswer& answer);

namespace tmuxError {

StructuredError notRunning();
StructuredError versionTooOld(std::string_view version);
StructuredError versionsMixed(std::string_view clientVersion);
StructuredError stale();
StructuredError dead();
StructuredError inputOff();
StructuredError busy();
StructuredError someoneTypes();
StructuredError asksForSecret();
StructuredError lineTooLong(std::size_t limit);
StructuredError textHasNul();
StructuredError badRepeatCount();
StructuredError sessionEndedAtOnce(bool destroyUnattached);
StructuredError cannotContain(std::string_view reason);
StructuredError unreadableAnswer();
StructuredError terminalDidNotOpen();
StructuredError pictureFailed(std::string_view reason);

}  // namespace tmuxError

}  // namespace velmora
