#include "VelmoraHelper/ToolCaller.h"

#include <cerrno>
#include <system_error>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketError.h"
#include "VelmoraHelper/ToolCatalogue.h"

namespace velmora {

namespace {

constexpr const char* openVelmora = "Open Velmora (or start velmora-headless), then retry.";

StructuredError unavailable(ToolName tool, std::string message, std::string suggestion) {
  return {.code = ErrorCode::bridgeUnavailable,
          .message = std::move(message),
          .operation = std::string(wireName(tool)),
          .retryable = true,
          .recoverySuggestion = std::move(suggestion)};
}

// The application was reached but did not answer: it may have acted on the request or not.
StructuredError unanswered(ToolName tool, const std::string& what) {
  if (!changesTerminal(tool)) return unavailable(tool, what + ".", openVelmora);
  return unavailable(tool, what + ", so it is unknown whether the call took effect.",
                     "Make sure that Velmora is open and read the session's output before you retry.");
}

StructuredError errorFor(ToolName tool, const UnixSocketError& error) {
  switch (error.kind()) {
    case UnixSocketError::Kind::unsafeEndpoint:
      return unavailable(
          tool, "Velmora's control socket is not safe to use: its path is too long or not the user's own.",
          "Give XDG_RUNTIME_DIR or TMPDIR the same short path for Velmora and for this helper.");
    case UnixSocketError::Kind::peerRejected:
      return unavailable(tool, "Velmora's control socket is served by another user.",
                         "Open Velmora as the user who runs this client, then retry.");
    case UnixSocketError::Kind::disconnected:
      break;
    case UnixSocketError::Kind::system:
      if (error.operation() == "write") break;
      if (error.code() == ENOENT || error.code() == ECONNREFUSED) {
        return unavailable(tool, "Velmora is not running.", openVelmora);
      }
      return unavailable(tool,
                         "Velmora could not be reached: " + std::string(error.operation()) + " failed (" +
                             std::generic_category().message(error.code()) + ").",
                         openVelmora);
  }
  return unanswered(tool, "Velmora closed the connection before it answered");
}

StructuredError errorFor(const LocalControlRequest& request, const LocalControlCodecError& error) {
  if (error == LocalControlCodecError::frameTooLarge &&
      encodeJson(request).size() > LocalControlCodec::maximumPayloadSize) {
    return {.code = ErrorCode::invalidArgument,
            .message = "The arguments are too large for one request.",
            .operation = std::string(wireName(request.operation)),
            .recoverySuggestion = "Correct the request arguments and try again."};
  }
  return unanswered(request.operation, "Velmora's answer could not be read");
}

}  // namespace

LocalControlResponse ToolCaller::call(ToolName tool, JSONObject arguments, LocalClientInput client) const {
  const LocalControlRequest request{.requestId = newId_(),
                                    .client = std::move(client),
                                    .operation = tool,
                                    .arguments = std::move(arguments)};
  LocalControlResponse response{.requestId = request.requestId};
  try {
    return bridge_(request);
  } catch (const UnixSocketError& error) {
    response.error = errorFor(tool, error);
  } catch (const LocalControlCodecError& error) {
    response.error = errorFor(request, error);
  } catch (const JsonDecodeError&) {
    response.error = unanswered(tool, "Velmora's answer could not be read");
  }
  return response;
}

}  // namespace velmora
