#include "TerminalAutomation/Tmux/TmuxErrors.h"

#include "System/Utf8.h"
#include "TerminalAutomation/Tmux/TmuxRows.h"

namespace velmora {

namespace {

/// Which tool and which session it is about, the core adds.
StructuredError make(ErrorCode code, std::string message, bool retryable, std::string suggestion) {
  return {.code = code,
          .message = std::move(message),
          .operation = {},
          .session = std::nullopt,
          .retryable = retryable,
          .recoverySuggestion = std::move(suggestion)};
}

StructuredError notPermitted(std::string message, std::string suggestion) {
  return make(ErrorCode::automationPermissionDenied, std::move(message), /*retryable=*/false,
              std::move(suggestion));
}

/// For a call that broke off: what happened, and what the user should know of its effect. One that may have
/// changed something has failed; the code of the others means that nothing was begun.
StructuredError brokenOff(std::string message, TmuxEffect effect, std::string suggestion) {
  switch (effect) {
    case TmuxEffect::none:
      return make(ErrorCode::terminalNotAvailable, std::move(message), /*retryable=*/true,
                  std::move(suggestion));
    case TmuxEffect::created:
      return make(ErrorCode::appleScriptExecutionFailed,
                  message + " It is unknown whether the session was created.", /*retryable=*/false,
                  "List the sessions before you create another one.");
    case TmuxEffect::typed:
      break;
  }
  // Repeating at once could run a command twice.
  return make(ErrorCode::appleScriptExecutionFailed,
              message + " The outcome is unknown: the input may have been typed.",
              /*retryable=*/false, "Read the session's output to see what happened before you send again.");
}

std::string firstLine(std::string_view text) {
  constexpr std::size_t longest = 200;
  return repairUtf8(text.substr(0, std::min(text.find('\n'), longest)));
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

StructuredError refusal(const TmuxAnswer& answer, TmuxEffect effect) {
  const std::string_view error = answer.errorOutput;
  // A hook of the user's may say the same of a file of its own, after the input was typed.
  const bool isOfSocket = contains(error, "error connecting to ") || contains(error, "error creating ");
  if ((isOfSocket && contains(error, "Permission denied")) || contains(error, "unsafe permissions")) {
    return notPermitted("tmux refused the connection: " + firstLine(error) + ".",
                        "Check the owner and the permissions of the tmux socket and its folder.");
  }
  if (contains(error, "access not allowed")) {
    return notPermitted("The tmux server does not admit this user.",
                        "Allow the user with tmux server-access -a, then retry.");
  }
  if (contains(error, "client is read-only")) {
    return notPermitted("The tmux server admits this user for reading only.",
                        "Allow writing with tmux server-access -w, then retry.");
  }
  if (contains(error, "no server running") || (isOfSocket && (contains(error, "No such file or directory") ||
                                                              contains(error, "Connection refused")))) {
    return tmuxError::notRunning();
  }
  if (contains(error, "too old for client") || contains(error, "protocol version mismatch")) {
    return tmuxError::versionsMixed("");
  }
  if (saysServerLost(answer)) {
    if (effect == TmuxEffect::none) return tmuxError::notRunning();
    return brokenOff("The tmux server ended during the call.", effect, "");
  }
  std::string message = "tmux could not complete the operation";
  message += error.empty() ? "." : ": " + firstLine(error) + ".";
  // A hook of the user's that fails makes a failure of an input that has been typed.
  if (effect != TmuxEffect::none) return brokenOff(std::move(message), effect, "");
  return make(ErrorCode::appleScriptExecutionFailed, std::move(message), /*retryable=*/true,
              "Check the tmux server, then retry.");
}

}  // namespace

std::optional<StructuredError> tmuxFailure(const TmuxAnswer& answer, TmuxEffect effect) {
  switch (answer.end) {
    case TmuxAnswer::End::exited:
      if (answer.exitStatus == 0 && answer.errorOutput.empty()) return std::nullopt;
      return refusal(answer, effect);
    case TmuxAnswer::End::timedOut:
      return brokenOff("tmux did not answer in time.", effect,
                       "Check that the tmux server responds, then retry.");
    case TmuxAnswer::End::cancelled:
      return brokenOff("Velmora is shutting down.", effect, "Start Velmora again, then retry.");
    case TmuxAnswer::End::outputTooLarge:
      return make(ErrorCode::outputUnavailable, "The terminal's history is too large to be read.",
                  /*retryable=*/true,
                  "Retry with visible output, or clear the history with tmux clear-history.");
    case TmuxAnswer::End::notInstalled:
      return make(ErrorCode::terminalNotAvailable, answer.errorOutput, /*retryable=*/true,
                  "Install tmux " + std::string(oldestTmuxVersionName) + " or newer, then retry.");
    case TmuxAnswer::End::unsafeSocket:
      break;
  }
  return notPermitted(answer.errorOutput + ".",
                      "Make the folder and the socket your own and private (chmod 700), then retry.");
}

bool saysNoSessions(const TmuxAnswer& answer) {
  return answer.end == TmuxAnswer::End::exited && answer.exitStatus == 1 &&
         (contains(answer.errorOutput, "no current target") ||
          contains(answer.errorOutput, "no current session") || contains(answer.errorOutput, "no sessions"));
}

bool saysServerLost(const TmuxAnswer& answer) {
  return answer.end == TmuxAnswer::End::exited &&
         (contains(answer.errorOutput, "server exited") || contains(answer.errorOutput, "lost server"));
}

namespace tmuxError {

StructuredError notRunning() {
  return make(ErrorCode::terminalNotRunning, "No tmux server is running.", /*retryable=*/true,
              "Create a session with terminal_create_session or start tmux, then retry.");
}

StructuredError versionTooOld(std::string_view version) {
  return make(ErrorCode::terminalNotAvailable,
              "tmux " + std::string(version) + " is too old; Velmora needs " +
                  std::string(oldestTmuxVersionName) + " or newer.",
              /*retryable=*/false, "Install a newer tmux and restart its server.");
}

StructuredError versionsMixed(std::string_view clientVersion) {
  const std::string program =
      clientVersion.empty() ? "the installed program" : "the program " + std::string(clientVersion);
  return make(ErrorCode::terminalNotAvailable,
              "The running tmux server and " + program + " are of versions that do not work together.",
              /*retryable=*/false, "End the tmux sessions and restart the tmux server, then retry.");
}

StructuredError stale() {
  return make(ErrorCode::sessionStale, "The tmux pane of this session is gone or has moved.",
              /*retryable=*/false, "List sessions and use the newly issued sessionId.");
}

StructuredError dead() {
  return make(ErrorCode::sessionStale, "The program in this tmux pane has ended.",
              /*retryable=*/false, "List sessions and choose another one, or create a new one.");
}

StructuredError inputOff() {
  return make(ErrorCode::sessionNotAllowed, "Input to this tmux pane is switched off.",
              /*retryable=*/false, "Allow input with tmux select-pane -e, or choose another session.");
}

StructuredError busy() {
  return make(ErrorCode::sessionBusy, /*message, which is the core's*/ "", /*retryable=*/true, "");
}

StructuredError someoneTypes() {
  return make(ErrorCode::sessionBusy, "Someone is typing in this session.", /*retryable=*/true,
              "Wait until the user has submitted or erased the line, then retry.");
}

StructuredError asksForSecret() {
  return make(ErrorCode::sessionBusy, "A program is asking for a secret in the tmux pane.",
              /*retryable=*/true, "Focus the session and let the user type it, then retry.");
}

StructuredError lineTooLong(std::size_t limit) {
  return make(ErrorCode::invalidArgument,
              "A line of the command is longer than the " + std::to_string(limit) +
                  " bytes that the program in the tmux pane can take; the rest would be cut off.",
              /*retryable=*/false, "Send it in shorter lines, or write it to a file and run that.");
}

StructuredError textHasNul() {
  return make(ErrorCode::invalidArgument, "Command must not contain a NUL character.",
              /*retryable=*/false, "Correct the request arguments and try again.");
}

StructuredError badRepeatCount() {
  return make(ErrorCode::invalidArgument, "repeatCount must be between 1 and 50.",
              /*retryable=*/false, "Correct the request arguments and try again.");
}

StructuredError sessionEndedAtOnce(bool destroyUnattached) {
  return make(ErrorCode::terminalNotAvailable,
              destroyUnattached
                  ? "tmux ended the new session at once because its option destroy-unattached is on."
                  : "The new tmux session ended at once.",
              /*retryable=*/false,
              destroyUnattached ? "Switch the option off (tmux set -g destroy-unattached off), then retry."
                                : "Check that the default shell of tmux starts, then retry.");
}

StructuredError cannotContain(std::string_view reason) {
  return make(
      ErrorCode::terminalNotAvailable,
      "New windows are to be contained, and this one could not be: " + firstLine(reason) + ".",
      /*retryable=*/false,
      "Install bubblewrap and allow it user namespaces, or switch containNewWindows off in the settings.");
}

StructuredError unreadableAnswer() {
  return make(ErrorCode::appleScriptExecutionFailed, "tmux gave an answer that cannot be understood.",
              /*retryable=*/true, "Check the tmux server, then retry.");
}

StructuredError terminalDidNotOpen() {
  return make(ErrorCode::terminalNotAvailable,
              "The session is selected in tmux, but the desktop's terminal did not show it.",
              /*retryable=*/true, "Attach to it in a terminal with tmux attach-session.");
}

StructuredError pictureFailed(std::string_view reason) {
  return make(ErrorCode::screenCaptureUnavailable,
              "The picture of the tmux pane could not be made: " + firstLine(reason) + ".",
              /*retryable=*/true, "Check the temporary folder's permissions and free space, then retry.");
}

}  // namespace tmuxError

}  // namespace velmora
