// JSON-RPC 2.0 messages as MCP uses them: requests and notifications in, results, errors and notifications
// out.
#pragma once

#include <boost/json/object.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// The error codes that JSON-RPC fixes, and the one of MCP's own that is used here.
enum class JsonRpcErrorCode {
  parseError = -32700,
  invalidRequest = -32600,
  methodNotFound = -32601,
  invalidParams = -32602,
  internalError = -32603,
  unsupportedProtocolVersion = -32022,
};

/// A message that is answered with an error.
class JsonRpcFailure : public std::runtime_error {
 public:
  JsonRpcFailure(JsonRpcErrorCode code, const std::string& message)
      : std::runtime_error(message), code_(code), message_(message) {}

  JsonRpcErrorCode code() const { return code_; }

  /// The sentence for the client; it may quote what the client sent, which `what()` would cut at a NUL.
  const std::string& message() const { return message_; }

  /// JSON text: what the client may read besides the sentence. Empty for nothing.
  const std::string& data() const { return data_; }
  JsonRpcFailure withData(std::string data) &&;

  /// JSON text; nothing when the id is not known.
  const std::optional<std::string>& id() const { return id_; }
  JsonRpcFailure withId(std::optional<std::string> id) &&;

 private:
  JsonRpcErrorCode code_;
  std::string message_;
  std::string data_{};
  std::optional<std::string> id_{};
};

/// The failure of a request of a revision that is not served so; it names those that are.
JsonRpcFailure unsupportedProtocolVersion(const std::string& requested);

/// A request, or a notification when it has no id.
struct JsonRpcRequest {
  std::optional<std::string> id{};  ///< The JSON text exactly as it was received: "7", "1.50", "\"a\"".
  std::string idKey{};              ///< As jsonRpcIdKey spells the id; empty without one.
  std::string method{};
  boost::json::object params{};  ///< Empty when absent.
};

/// A message that was parsed, and the text that it was parsed from, which must outlive it.
struct JsonRpcMessage {
  std::string_view text;
  boost::json::value document;
};

/// Throws JsonRpcFailure for what is not valid JSON.
JsonRpcMessage parseJsonRpc(std::string_view text);

/// The messages of a batch, taken out of the message that is one, or nothing when it is no JSON array. Throws
/// JsonRpcFailure for an empty one.
std::optional<std::vector<JsonRpcMessage>> batchIn(JsonRpcMessage& message);

/// The request that the message is, or nothing when it is a response. Throws JsonRpcFailure.
std::optional<JsonRpcRequest> requestIn(JsonRpcMessage message);

/// The id of a request of which only the two ends were kept: that of a member before or behind the long one.
/// JSON text, or nothing when it is not there whole.
std::optional<std::string> jsonRpcIdAtAnEnd(std::string_view beginning, std::string_view end);

/// One spelling for all texts of the same id, so that ids can be compared.
std::string jsonRpcIdKey(const boost::json::value& id);

/// The member `name` of `object` when it is a string.
std::optional<std::string> stringMember(const boost::json::object& object, const char* name);

/// The message that answers the request `id`; both arguments are JSON text.
std::string jsonRpcResult(std::string_view id, std::string_view result);

/// `id` is JSON text; nothing leaves it out.
std::string jsonRpcError(const std::optional<std::string>& id, const JsonRpcFailure& failure);

/// `params` is JSON text.
std::string jsonRpcNotification(std::string_view method, std::string_view params);

}  // namespace velmora
