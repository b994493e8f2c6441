// The three records that travel on the local control channel.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "BridgeModels/JSONValue.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/ToolName.h"
#include "BridgeModels/ToolPayloads.h"
#include "BridgeModels/Uuid.h"

namespace velmora {

/// The one version there is. Requests of any other are answered with an error; nothing is negotiated.
inline constexpr std::int64_t localControlProtocolVersion = 1;

/// The message of the error that answers a request of another version, so that a client can tell it apart.
inline constexpr const char* unsupportedProtocolVersionMessage =
    "Unsupported local control protocol version.";

/// Who calls, as the helper reports it.
struct LocalClientInput {
  std::string name{};
  std::optional<std::string> version{};
  std::int32_t processId = 0;  ///< For identification only; nothing acts on it.

  bool operator==(const LocalClientInput&) const = default;
};
BOOST_DESCRIBE_STRUCT(LocalClientInput, (), (name, version, processId))

/// One tool call. `Arguments` is what the arguments are held in: the record that travels, or, where they are
/// only read once or passed on, the part of the document that they stand in. `Operation` names the tool; on
/// the channel for users it is a verb.
template <class Arguments, class Operation = ToolName>
struct LocalControlCall {
  std::int64_t protocolVersion = localControlProtocolVersion;
  Uuid requestId{};  ///< Chosen by the helper; the response carries it back.
  LocalClientInput client{};
  Operation operation{};
  Arguments arguments{};  ///< As the MCP client sent them; required on the wire, `{}` for none.
  /// Asks for the extended form: without it, arguments that only that has are not there.
  std::optional<bool> extended{};
  /// Asks for a LocalControlProgress about once a second while the call waits. Extended form only.
  std::optional<bool> progress{};

  bool operator==(const LocalControlCall&) const = default;
  BOOST_DESCRIBE_CLASS(LocalControlCall, (),
                       (protocolVersion, requestId, client, operation, arguments, extended, progress), (), ())
};

using LocalControlRequest = LocalControlCall<JSONObject>;

/// What comes before the answer of a call that asked for progress, any number of times.
struct LocalControlProgress {
  Uuid requestId{};
  std::string lastLine{};  ///< Of the terminal's screen; no other message has this member.

  bool operator==(const LocalControlProgress&) const = default;
};
BOOST_DESCRIBE_STRUCT(LocalControlProgress, (), (requestId, lastLine))

/// The answer to one call: `data` is the tool's payload, an object.
using LocalControlResponse = ToolResult<JSONValue>;

}  // namespace velmora
