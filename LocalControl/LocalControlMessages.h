// The three records that travel on the local control channel.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BridgeModels/JSONValue.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/StructuredError.h"
#include "BridgeModels/ToolName.h"
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

/// One tool call.
struct LocalControlRequest {
  std::int64_t protocolVersion = localControlProtocolVersion;
  Uuid requestId{};  ///< Chosen by the helper; the response carries it back.
  LocalClientInput client{};
  ToolName operation = ToolName::status;
  JSONObject arguments{};  ///< As the MCP client sent them; required on the wire, `{}` for none.

  bool operator==(const LocalControlRequest&) const = default;
};
BOOST_DESCRIBE_STRUCT(LocalControlRequest, (), (protocolVersion, requestId, client, operation, arguments))

/// The answer to one request.
struct LocalControlResponse {
  Uuid requestId{};
  bool ok = false;
  std::optional<JSONValue> data{};  ///< The tool's payload, an object.
  std::vector<StructuredError> warnings{};
  std::optional<StructuredError> error{};  ///< Present when `ok` is false.

  bool operator==(const LocalControlResponse&) const = default;
};
BOOST_DESCRIBE_STRUCT(LocalControlResponse, (), (requestId, ok, data, warnings, error))

}  // namespace velmora
