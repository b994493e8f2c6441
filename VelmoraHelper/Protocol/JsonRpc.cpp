#include "VelmoraHelper/Protocol/JsonRpc.h"

#include <boost/json/serialize.hpp>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/Protocol/JsonSourceText.h"
#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

namespace {

std::optional<std::string> idOf(const boost::json::object& message, std::string_view text) {
  const auto* id = message.if_contains("id");
  if (id == nullptr) return std::nullopt;
  if (!id->is_string() && !id->is_number()) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidRequest, "The id must be a string or a number.");
  }
  return std::string(lastMemberText(text, "id"));
}

// The text when it is a whole string or number, as an id is.
std::optional<std::string> wholeId(std::string_view text) {
  try {
    const auto value = parseJson(text);
    if (value.is_string() || value.is_number()) return std::string(text);
  } catch (const JsonDecodeError&) {  // it was cut
  }
  return std::nullopt;
}

// The id of a message that cannot be parsed although its shape is clear: half a surrogate pair in a string,
// which some clients write when they cut an emoji, or arguments that are nested too deeply. A client that is
// not told which message was refused waits for its answer.
std::optional<std::string> idOfUnparsable(std::string_view text) {
  try {
    return wholeId(lastMemberText(text, "id"));
  } catch (const NoSuchText&) {
    return std::nullopt;
  }
}

void beginMessage(JsonWriter& writer) {
  writer.beginObject();
  writeMember(writer, "jsonrpc", "2.0");
}

}  // namespace

JsonRpcFailure JsonRpcFailure::withData(std::string data) && {
  data_ = std::move(data);
  return std::move(*this);
}

JsonRpcFailure JsonRpcFailure::withId(std::optional<std::string> id) && {
  id_ = std::move(id);
  return std::move(*this);
}

JsonRpcFailure unsupportedProtocolVersion(const std::string& requested) {
  JSONArray supported;
  for (const auto& revision : enumCases<ProtocolRevision>) {
    if (isStateless(revision.value)) supported.emplace_back(std::string(revision.wireName));
  }
  return JsonRpcFailure(JsonRpcErrorCode::unsupportedProtocolVersion, "Unsupported protocol version")
      .withData(encodeJson(JSONObject{{"supported", std::move(supported)}, {"requested", requested}}));
}

JsonRpcMessage parseJsonRpc(std::string_view text) {
  try {
    return {.text = text, .document = parseJson(text)};
  } catch (const JsonDecodeError&) {
    throw JsonRpcFailure(JsonRpcErrorCode::parseError, "The message is not valid JSON.")
        .withId(idOfUnparsable(text));
  }
}

std::optional<std::vector<JsonRpcMessage>> batchIn(JsonRpcMessage& message) {
  auto* elements = message.document.if_array();
  if (elements == nullptr) return std::nullopt;
  if (elements->empty()) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidRequest, "A batch needs at least one message.");
  }
  std::vector<JsonRpcMessage> messages;
  messages.reserve(elements->size());
  const auto texts = elementTexts(message.text);
  for (std::size_t index = 0; index < texts.size(); ++index) {
    messages.push_back({.text = texts[index], .document = std::move(elements->at(index))});
  }
  return messages;
}

std::optional<JsonRpcRequest> requestIn(JsonRpcMessage received) {
  auto* message = received.document.if_object();
  if (message == nullptr) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidRequest,
                         received.document.is_array() ? "Batches are not supported; send one message a line."
                                                      : "The message must be a JSON object.");
  }
  const auto* method = message->if_contains("method");
  if (method == nullptr && (message->contains("result") || message->contains("error"))) return std::nullopt;

  JsonRpcRequest request{.id = idOf(*message, received.text)};
  if (request.id) request.idKey = jsonRpcIdKey(message->at("id"));
  const auto invalid = [&request](JsonRpcErrorCode code, const std::string& problem) {
    return JsonRpcFailure(code, problem).withId(request.id);
  };
  const auto* version = message->if_contains("jsonrpc");
  if (version == nullptr || *version != "2.0") {
    throw invalid(JsonRpcErrorCode::invalidRequest, "jsonrpc must be \"2.0\".");
  }
  if (method == nullptr || !method->is_string()) {
    throw invalid(JsonRpcErrorCode::invalidRequest, "method must be a string.");
  }
  request.method.assign(method->get_string().data(), method->get_string().size());
  if (auto* params = message->if_contains("params"); params != nullptr && !params->is_null()) {
    if (params->is_object()) {
      request.params = std::move(params->get_object());
    } else if (request.id) {  // notifications are never answered
      throw invalid(JsonRpcErrorCode::invalidParams, "params must be an object.");
    }
  }
  return request;
}

std::optional<std::string> jsonRpcIdAtAnEnd(std::string_view beginning, std::string_view end) {
  if (auto id = wholeId(memberTextInBeginning(beginning, "id"))) return id;
  // As the last member: the scalar before the bracket that closes the message.
  const auto name = end.rfind("\"id\"");
  const auto colon = name == std::string_view::npos ? name : end.find_first_not_of(" \t", name + 4);
  if (colon == std::string_view::npos || end[colon] != ':' || name == 0 || end[name - 1] == '\\')
    return std::nullopt;
  const auto closing = end.find_last_not_of(" \t\r");
  const auto value = end.find_first_not_of(" \t", colon + 1);
  if (end[closing] != '}' || value >= closing) return std::nullopt;
  return wholeId(end.substr(value, end.find_last_not_of(" \t", closing - 1) + 1 - value));
}

std::string jsonRpcIdKey(const boost::json::value& id) { return boost::json::serialize(id); }

std::optional<std::string> stringMember(const boost::json::object& object, const char* name) {
  const auto* value = object.if_contains(name);
  if (value == nullptr || !value->is_string()) return std::nullopt;
  return std::string(value->get_string().data(), value->get_string().size());
}

std::string jsonRpcResult(std::string_view id, std::string_view result) {
  JsonWriter writer(JsonFormat::wire);
  beginMessage(writer);
  writer.key("id");
  writer.raw(id);
  writer.key("result");
  writer.raw(result);
  writer.endObject();
  return writer.take();
}

std::string jsonRpcError(const std::optional<std::string>& id, const JsonRpcFailure& failure) {
  JsonWriter writer(JsonFormat::wire);
  beginMessage(writer);
  if (id) {
    writer.key("id");
    writer.raw(*id);
  }
  writer.key("error");
  writer.beginObject();
  writeMember(writer, "code", static_cast<int>(failure.code()));
  writeMember(writer, "message", failure.message());
  if (!failure.data().empty()) {
    writer.key("data");
    writer.raw(failure.data());
  }
  writer.endObject();
  writer.endObject();
  return writer.take();
}

std::string jsonRpcNotification(std::string_view method, std::string_view params) {
  JsonWriter writer(JsonFormat::wire);
  beginMessage(writer);
  writeMember(writer, "method", method);
  writer.key("params");
  writer.raw(params);
  writer.endObject();
  return writer.take();
}

}  // namespace velmora
