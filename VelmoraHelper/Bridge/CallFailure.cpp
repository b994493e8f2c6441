#include "VelmoraHelper/Bridge/CallFailure.h"

#include <cerrno>
#include <string>
#include <system_error>

#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/Tools.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketError.h"

namespace velmora {

namespace {

constexpr const char* openVelmora = "Open Velmora (or start velmora-headless), then retry.";
constexpr const char* sameUser = "Open Velmora as the user who runs this client, then retry.";

StructuredError unavailable(ToolName tool, std::string message, std::string suggestion) {
  return {.code = ErrorCode::bridgeUnavailable,
          .message = std::move(message),
          .operation = std::string(wireName(tool)),
          .retryable = true,
          .recoverySuggestion = std::move(suggestion)};
}

// The application was reached but did not answer, so it may have acted on the request. Repeat a call that
// changes something only after somebody has looked.
StructuredError unanswered(ToolName tool, const std::string& what) {
  if (!toolTraits(tool).changesTerminal) return unavailable(tool, what + ".", openVelmora);
  auto error = unavailable(tool, what + ", so it is unknown whether the call took effect.",
                           "Make sure that Velmora is open and read the session's output before you retry.");
  error.retryable = false;
  return error;
}

StructuredError connectFailed(ToolName tool, std::int32_t code) {
  switch (code) {
    case ENOENT:
    case ECONNREFUSED:
      return unavailable(tool, "Velmora is not running.", openVelmora);
    case EACCES:
    case EPERM:
      return unavailable(tool, "Velmora's control socket belongs to another user.", sameUser);
    case EAGAIN:
      return unavailable(tool, "Velmora is running but accepts no more connections.",
                         "Retry in a moment; when it stays so, restart Velmora.");
    default:
      return unavailable(
          tool,
          "Velmora could not be reached: connect failed (" + std::generic_category().message(code) + ").",
          openVelmora);
  }
}

StructuredError errorFor(ToolName tool, const UnixSocketError& error) {
  switch (error.kind()) {
    case UnixSocketError::Kind::unsafeEndpoint:
      return unavailable(
          tool, "Velmora's control socket is not safe to use: its path is too long or not the user's own.",
          "Give XDG_RUNTIME_DIR or TMPDIR the same short path for Velmora and for this helper.");
    case UnixSocketError::Kind::peerRejected:
      return unavailable(tool, "Velmora's control socket is served by another user.", sameUser);
    case UnixSocketError::Kind::disconnected:
      break;
    case UnixSocketError::Kind::system:
      if (error.operation() == "write" || error.operation() == "read") break;
      if (error.operation() == "connect") return connectFailed(tool, error.code());
      return unavailable(tool,
                         "Velmora could not be reached: " + std::string(error.operation()) + " failed (" +
                             std::generic_category().message(error.code()) + ").",
                         openVelmora);
  }
  return unanswered(tool, "Velmora closed the connection before it answered");
}

StructuredError errorFor(const BridgeRequest& request, const LocalControlCodecError& error) {
  if (error == LocalControlCodecError::frameTooLarge &&
      request.payload.size() > LocalControlCodec::maximumPayloadSize) {
    return {.code = ErrorCode::invalidArgument,
            .message = "The arguments are too large for one request.",
            .operation = std::string(wireName(request.tool)),
            .recoverySuggestion = "Correct the request arguments and try again."};
  }
  return unanswered(request.tool, "Velmora's answer could not be read");
}

}  // namespace

BridgeAnswer answerToFailure(const BridgeRequest& request, std::exception_ptr failure) {
  try {
    std::rethrow_exception(std::move(failure));
  } catch (const UnixSocketError& error) {
    return {request, errorFor(request.tool, error)};
  } catch (const LocalControlCodecError& error) {
    return {request, errorFor(request, error)};
  } catch (const JsonDecodeError&) {
    return {request, unanswered(request.tool, "Velmora's answer could not be read")};
  }
}

BridgeAnswer answerToSilence(const BridgeRequest& request, std::chrono::seconds waited) {
  return {request, unanswered(request.tool, "Velmora did not answer within " +
                                                std::to_string(waited.count()) + " seconds")};
}

BridgeAnswer answerToCrowding(const BridgeRequest& request) {
  return {request, unavailable(request.tool, "Velmora is busy with earlier calls; this one was not sent.",
                               "Retry when the earlier calls have been answered.")};
}

}  // namespace velmora
