// What the user and the client read when tmux fails: the bridge's error codes, in words that fit tmux.
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
std::optional<StructuredError> tmuxFailure(const TmuxAnswer& answer, std::string_view operation,
                                           TmuxEffect effect);

/// The server had sessions a moment ago and has none now, or runs without any.
bool saysNoSessions(const TmuxAnswer& answer);

/// The client lost its server in mid-call: it died, or the two programs do not understand each other.
bool saysServerLost(const TmuxAnswer& answer);

namespace tmuxError {

StructuredError notRunning(std::string_view operation);
StructuredError versionTooOld(std::string_view version, std::string_view operation);
StructuredError versionsMixed(std::string_view clientVersion, std::string_view operation);
StructuredError stale(std::string_view operation);
StructuredError dead(std::string_view operation);
StructuredError inputOff(std::string_view operation);
StructuredError busy(std::string_view operation);
StructuredError textHasNul(std::string_view operation);
StructuredError badRepeatCount(std::string_view operation);
StructuredError sessionEndedAtOnce(bool destroyUnattached, std::string_view operation);
StructuredError unreadableAnswer(std::string_view operation);
StructuredError terminalDidNotOpen(std::string_view operation);
StructuredError pictureFailed(std::string_view reason, std::string_view operation);

}  // namespace tmuxError

}  // namespace velmora
