// A tool call on its way to the application, and what comes back of it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "BridgeModels/Json/JsonPart.h"
#include "LocalControl/LocalControlMessages.h"

namespace velmora {

/// A call, written once: what is sent and sent again is the same text.
struct BridgeRequest {
  /// Throws JsonEncodeError.
  explicit BridgeRequest(const LocalControlCall<JsonMembers>& call);

  Uuid id;
  ToolName tool;
  std::string lane;    ///< The session that it changes, in one spelling; empty for none.
  bool waits = false;  ///< It is answered only some time after it has changed the session.
  bool asksForProgress = false;
  std::string payload;  ///< The request as JSON text; it may be longer than a frame can carry.
};

/// The terminal's last line, if the frame tells of a call's progress. Throws LocalControlCodecError and
/// JsonDecodeError.
std::optional<std::string> lastLineIn(std::string_view frame);

/// The application's answer, or one of the helper's own when the application could not be asked.
struct BridgeAnswer {
  /// An answer of the helper's own: the call failed.
  BridgeAnswer(const BridgeRequest& request, StructuredError error)
      : result{.requestId = request.id, .error = std::move(error)} {}

  /// The answer that the frame holds. Throws LocalControlCodecError and JsonDecodeError.
  explicit BridgeAnswer(std::string_view frame);

  std::shared_ptr<const boost::json::value> document{};  ///< What `result` points into.
  ToolResult<JsonPart> result{};
};

}  // namespace velmora
