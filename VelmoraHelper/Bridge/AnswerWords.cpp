#include "VelmoraHelper/Bridge/AnswerWords.h"

#include <string_view>

#include "BridgeModels/Tools.h"

namespace velmora {

namespace {

// The application's own refusal of a session in which a program runs. Other reasons, such as somebody who is
// typing, come in words of their own.
constexpr std::string_view programRuns = "The Terminal session is busy.";

void explain(const BridgeRequest& request, StructuredError& error) {
  if (error.code == ErrorCode::invalidArgument && error.message == unsupportedProtocolVersionMessage) {
    error = {.code = ErrorCode::bridgeUnavailable,
             .message =
                 "The running Velmora is of another version than this helper: they speak different "
                 "versions of the control channel.",
             .operation = std::string(wireName(request.tool)),
             .retryable = false,
             .recoverySuggestion =
                 "Quit Velmora, start the version that this helper belongs to, and restart the client."};
  }
  // The history is written after the delivery, so nothing but the record is missing.
  if (error.code == ErrorCode::historyStorageFailed && toolTraits(request.tool).changesTerminal) {
    error.message = "The input was delivered; only its record could not be saved. " + error.message;
    error.retryable = false;
    error.recoverySuggestion =
        "Do not send it again. Tell the user to check disk space and the permissions of Velmora's data folder.";
  }
  if (error.code == ErrorCode::sessionBusy && error.message == programRuns) {
    error.recoverySuggestion =
        "Waiting helps only if what runs there ends by itself, as a build does: `busy` in "
        "terminal_list_sessions is false then. A REPL, pager, editor or ssh does not end: ask the user to quit "
        "it, or to allow input to busy sessions in Velmora's settings.";
  }
}

}  // namespace

BridgeAnswer explained(const BridgeRequest& request, BridgeAnswer answer) {
  if (answer.result.error) explain(request, *answer.result.error);
  for (auto& warning : answer.result.warnings) {
    if (warning.code != ErrorCode::outputTruncated) continue;
    warning.message = "Only the end is shown.";
    warning.recoverySuggestion = "Raise maxCharacters, up to 50000, for more.";
    warning.session.reset();
  }
  return answer;
}

}  // namespace velmora
