#include "VelmoraHelper/McpServer.h"

#include <algorithm>
#include <array>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "VelmoraHelper/ToolCatalogue.h"

namespace velmora {

namespace {

constexpr std::array<std::string_view, 2> protocolVersions{"2025-06-18", "2025-11-25"};  // the latest last

std::string_view textOf(const boost::json::string& string) { return {string.data(), string.size()}; }

const boost::json::string* stringMember(const boost::json::object& object, const char* name) {
  const auto* value = object.if_contains(name);
  return value == nullptr ? nullptr : value->if_string();
}

std::string negotiated(std::string_view asked) {
  const bool supported =
      std::find(protocolVersions.begin(), protocolVersions.end(), asked) != protocolVersions.end();
  return std::string(supported ? asked : protocolVersions.back());
}

JSONObject argumentsOf(const boost::json::object& params) {
  JSONObject arguments;
  const auto* value = params.if_contains("arguments");
  if (value == nullptr || value->is_null()) return arguments;
  if (!value->is_object()) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidParams, "arguments must be an object.");
  }
  JsonReader(*value, JsonPath{}, JsonFormat::wire).read(arguments);
  return arguments;
}

// The answer as structured content, and the same as text for clients that know no other.
std::string toolResult(const LocalControlResponse& response) {
  const auto envelope = encodeJson(response);
  JsonWriter text(JsonFormat::wire);
  text.string(envelope);
  std::string result(R"({"content":[{"type":"text","text":)");
  result.append(text.take()).append(R"(}],"structuredContent":)").append(envelope);
  return result.append(R"(,"isError":)").append(response.ok ? "false}" : "true}");
}

}  // namespace

McpServer::McpServer(Identity identity, ToolCaller caller)
    : version_(std::move(identity.version)),
      client_{.name = "unknown", .processId = identity.clientProcessId},
      caller_(std::move(caller)) {}

std::optional<std::string> McpServer::answer(std::string_view line) {
  try {
    const auto request = parseJsonRpc(line);
    if (!request || !request->id) return std::nullopt;
    try {
      return jsonRpcResult(*request->id, resultOf(*request));
    } catch (const JsonRpcFailure& failure) {
      return jsonRpcError(*request->id, failure.code(), failure.what());
    } catch (const std::exception&) {  // a client must never wait for an answer that does not come
      return jsonRpcError(*request->id, JsonRpcErrorCode::internalError, "The helper failed to do this.");
    }
  } catch (const JsonRpcFailure& failure) {
    return jsonRpcError(failure.id(), failure.code(), failure.what());
  }
}

std::string McpServer::answerToTooLongLine() {
  return jsonRpcError("null", JsonRpcErrorCode::invalidRequest, "The message is too long.");
}

std::string McpServer::resultOf(const JsonRpcRequest& request) {
  if (request.method == "initialize") return initialize(request.params);
  if (request.method == "ping") return "{}";
  if (request.method == "tools/list") return toolListJson();
  if (request.method == "tools/call") return callTool(request.params);
  throw JsonRpcFailure(JsonRpcErrorCode::methodNotFound, "Unknown method: " + request.method);
}

std::string McpServer::initialize(const boost::json::object& params) {
  const auto* asked = stringMember(params, "protocolVersion");
  if (asked == nullptr) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidParams, "protocolVersion must be a string.");
  }
  if (const auto* info = params.if_contains("clientInfo"); info != nullptr && info->is_object()) {
    if (const auto* name = stringMember(info->get_object(), "name")) client_.name = textOf(*name);
    if (const auto* version = stringMember(info->get_object(), "version")) client_.version = textOf(*version);
  }
  const JSONObject result{
      {"protocolVersion", negotiated(textOf(*asked))},
      {"capabilities", JSONObject{{"tools", JSONObject{}}}},
      {"serverInfo", JSONObject{{"name", "velmora"}, {"title", "Velmora"}, {"version", version_}}},
      {"instructions", std::string(toolInstructions())},
  };
  return encodeJson(result);
}

std::string McpServer::callTool(const boost::json::object& params) const {
  const auto* name = stringMember(params, "name");
  if (name == nullptr) throw JsonRpcFailure(JsonRpcErrorCode::invalidParams, "name must be a string.");
  const auto tool = fromWireName<ToolName>(textOf(*name));
  if (!tool) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidParams, "Unknown tool: " + std::string(textOf(*name)));
  }
  return toolResult(caller_.call(*tool, argumentsOf(params), client_));
}

}  // namespace velmora
