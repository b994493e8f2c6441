#include "VelmoraHelper/Mcp/ServerAnswers.h"

#include "BridgeModels/Json/JsonEncoding.h"
#include "VelmoraHelper/Tools/ToolCatalogue.h"

namespace velmora {

namespace {

constexpr std::int64_t cacheableMilliseconds = 3'600'000;  // the tools change with the program only

void writeImplementation(JsonWriter& writer, ProtocolRevision revision, const std::string& version) {
  writer.beginObject();
  writeMember(writer, "name", "velmora");
  if (hasTitles(revision)) writeMember(writer, "title", "Velmora");
  writeMember(writer, "version", version);
  writer.endObject();
}

void writeCapabilities(JsonWriter& writer) {
  writer.key("capabilities");
  writer.beginObject();
  writer.key("tools");
  writer.beginObject();
  writer.endObject();
  writer.endObject();
}

void writeCaching(JsonWriter& writer) {
  writeMember(writer, "ttlMs", cacheableMilliseconds);
  writeMember(writer, "cacheScope", "public");
}

template <class Write>
std::string object(const Write& writeMembers) {
  JsonWriter writer(JsonFormat::wire);
  writer.beginObject();
  writeMembers(writer);
  writer.endObject();
  return writer.take();
}

}  // namespace

void ServerAnswers::writeStatelessMembers(JsonWriter& writer) const {
  writeMember(writer, "resultType", "complete");
  writer.key("_meta");
  writer.beginObject();
  writer.key("io.modelcontextprotocol/serverInfo");
  writeImplementation(writer, ProtocolRevision::july2026, version_);
  writer.endObject();
}

const std::string& ServerAnswers::discover() {
  if (!discover_.empty()) return discover_;
  return discover_ = object([this](JsonWriter& writer) {
           writeCapabilities(writer);
           writeMember(writer, "instructions", toolInstructions());
           writer.key("supportedVersions");
           writer.beginArray();
           for (const auto& revision : enumCases<ProtocolRevision>) {
             if (isStateless(revision.value)) writer.string(revision.wireName);
           }
           writer.endArray();
           writeCaching(writer);
           writeStatelessMembers(writer);
         });
}

const std::string& ServerAnswers::initialize(ProtocolRevision revision) {
  auto& result = initialize_.at(static_cast<std::size_t>(revision));
  if (!result.empty()) return result;
  return result = object([&](JsonWriter& writer) {
           writeCapabilities(writer);
           writeMember(writer, "instructions", toolInstructions());
           writeMember(writer, "protocolVersion", wireName(revision));
           writer.key("serverInfo");
           writeImplementation(writer, revision, version_);
         });
}

const std::string& ServerAnswers::toolList(ProtocolRevision revision) {
  auto& result = toolLists_.at(static_cast<std::size_t>(revision));
  if (!result.empty()) return result;
  return result = object([&](JsonWriter& writer) {
           writeToolList(writer, revision);
           if (!isStateless(revision)) return;
           writeCaching(writer);
           writeStatelessMembers(writer);
         });
}

}  // namespace velmora
