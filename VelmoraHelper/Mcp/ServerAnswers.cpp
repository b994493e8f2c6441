#include "VelmoraHelper/Mcp/ServerAnswers.h"

#include "BridgeModels/Json/JsonEncoding.h"
#include "VelmoraHelper/Tools/ToolCatalogue.h"

namespace velmora {

namespace {

constexpr int cacheableMilliseconds = 3'600'000;  // the tools change with the program only

JSONObject implementation(ProtocolRevision revision, const std::string& version) {
  JSONObject members{{"name", "velmora"}, {"version", version}};
  if (hasTitles(revision)) members.insert({"title", "Velmora"});
  return members;
}

JSONObject capabilities() { return {{"tools", JSONObject{}}}; }

// `object` (JSON text) with further members (each with a comma before it) before its closing bracket.
std::string with(std::string object, const std::string& members) {
  object.pop_back();
  return object.append(members).append("}");
}

std::string caching() {
  return R"(,"ttlMs":)" + std::to_string(cacheableMilliseconds) + R"(,"cacheScope":"public")";
}

std::string initializeResult(ProtocolRevision revision, const std::string& version) {
  return encodeJson(JSONObject{{"protocolVersion", std::string(wireName(revision))},
                               {"capabilities", capabilities()},
                               {"serverInfo", implementation(revision, version)},
                               {"instructions", std::string(toolInstructions())}});
}

std::string discoverResult() {
  JSONArray versions;
  for (const auto& revision : enumCases<ProtocolRevision>) {
    if (isStateless(revision.value)) versions.emplace_back(std::string(revision.wireName));
  }
  return encodeJson(JSONObject{{"supportedVersions", std::move(versions)},
                               {"capabilities", capabilities()},
                               {"instructions", std::string(toolInstructions())}});
}

}  // namespace

ServerAnswers::ServerAnswers(const std::string& version)
    : version_(version),
      statelessMembers_(R"(,"resultType":"complete","_meta":{"io.modelcontextprotocol/serverInfo":)" +
                        encodeJson(implementation(ProtocolRevision::july2026, version)) + "}") {}

const std::string& ServerAnswers::discover() {
  if (discover_.empty()) discover_ = with(discoverResult(), caching() + statelessMembers_);
  return discover_;
}

const std::string& ServerAnswers::initialize(ProtocolRevision revision) {
  auto& result = initialize_.at(static_cast<std::size_t>(revision));
  if (result.empty()) result = initializeResult(revision, version_);
  return result;
}

const std::string& ServerAnswers::toolList(ProtocolRevision revision) {
  auto& result = toolLists_.at(static_cast<std::size_t>(revision));
  if (result.empty()) {
    result = toolListJson(revision);
    if (isStateless(revision)) result = with(std::move(result), caching() + statelessMembers_);
  }
  return result;
}

}  // namespace velmora
