#include "VelmoraHelper/Mcp/RequestContext.h"

#include "VelmoraHelper/Protocol/JsonRpc.h"

namespace velmora {

namespace {

constexpr const char* versionKey = "io.modelcontextprotocol/protocolVersion";
constexpr const char* clientKey = "io.modelcontextprotocol/clientInfo";
constexpr const char* capabilitiesKey = "io.modelcontextprotocol/clientCapabilities";

const boost::json::object* metaOf(const boost::json::object& params) {
  const auto* meta = params.if_contains("_meta");
  return meta == nullptr ? nullptr : meta->if_object();
}

ProtocolRevision revisionOf(const boost::json::value* stated) {
  if (stated == nullptr || !stated->is_string()) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidParams,
                         std::string("_meta needs ") + versionKey + ", a string.");
  }
  const std::string name(stated->get_string().data(), stated->get_string().size());
  const auto revision = fromWireName<ProtocolRevision>(name);
  if (revision && isStateless(*revision)) return *revision;
  throw unsupportedProtocolVersion(name);
}

}  // namespace

std::optional<RequestContext> statedContext(const boost::json::object& params) {
  const auto* meta = metaOf(params);
  if (meta == nullptr || !(meta->contains(versionKey) || meta->contains(capabilitiesKey)))
    return std::nullopt;
  RequestContext context{.revision = revisionOf(meta->if_contains(versionKey)),
                         .client = clientNameOf(meta->if_contains(clientKey))};
  const auto* capabilities = meta->if_contains(capabilitiesKey);
  if (capabilities == nullptr || !capabilities->is_object()) {
    throw JsonRpcFailure(JsonRpcErrorCode::invalidParams,
                         std::string("_meta needs ") + capabilitiesKey + ", an object.");
  }
  return context;
}

ClientName clientNameOf(const boost::json::value* implementation) {
  ClientName client;
  const auto* members = implementation == nullptr ? nullptr : implementation->if_object();
  if (members == nullptr) return client;
  if (const auto name = stringMember(*members, "name")) client.name = *name;
  if (const auto version = stringMember(*members, "version")) client.version = *version;
  return client;
}

std::optional<std::string> progressTokenOf(const boost::json::object& params) {
  const auto* meta = metaOf(params);
  const auto* token = meta == nullptr ? nullptr : meta->if_contains("progressToken");
  if (token == nullptr || !(token->is_string() || token->is_number())) return std::nullopt;
  return jsonRpcIdKey(*token);
}

}  // namespace velmora
