// JSON-RPC 2.0 messages as MCP uses them: requests and notifications in, results and errors out.
#pragma once

#include <boost/json/object.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velmora {

/// The error codes that JSON-RPC fixes.
enum class JsonRpcErrorCode {
  parseError = -32700,
  invalidRequest = -32600,
  methodNotFound = -32601,
  invalidParams = -32602,
  internalError = -32603,
};

/// A request that is answered with an error; `what()` is the sentence for the client.
class JsonRpcFailure : public std::runtime_error {
 public:
  JsonRpcFailure(JsonRpcErrorCode code, const std::string& message, std::string id = "null")
      : std::runtime_error(message), code_(code), id_(std::move(id)) {}

  JsonRpcErrorCode code() const { return code_; }
  const std::string& id() const { return id_; }  ///< JSON text, "null" when the id is not known.

 private:
  JsonRpcErrorCode code_;
  std::string id_;
};

/// A request, or a notification when it has no id.
struct JsonRpcRequest {
  std::optional<std::string> id{};  ///< The JSON text exactly as it was received: "7", "1.50", "\"a\"".
  std::string method{};
  boost::json::object params{};  ///< Empty when absent.
};

/// The request that `text` holds, or nothing when it is a response. Throws JsonRpcFailure.
std::optional<JsonRpcRequest> parseJsonRpc(std::string_view text);

/// The message that answers the request `id`; both arguments are JSON text.
std::string jsonRpcResult(std::string_view id, std::string_view result);

std::string jsonRpcError(std::string_view id, JsonRpcErrorCode code, std::string_view message);

}  // namespace velmora
