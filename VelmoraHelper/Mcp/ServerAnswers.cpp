#include "VelmoraHelper/Mcp/ServerAnswers.h"

#include "BridgeModels/Json/JsonEncoding.h"
#include "VelmoraHelper/Mcp/ServerIcon.h"
#include "VelmoraHelper/Tools/CapturedPicture.h"
#include "VelmoraHelper/Tools/ToolCatalogue.h"

namespace velmora {

namespace {

constexpr std::int64_t cacheableMilliseconds = 3'600'000;  // the tools change with the program only

// What a client can show of the server beside its name. The icon comes with it: nothing is to be fetched.
void writeDescription(JsonWriter& writer) {
  writeMember(writer, "description", "Work in the user's own terminal, within limits that the user sets.");
  writer.key("icons");
  writer.beginArray();
  writer.beginObject();
  writeMember(writer, "src", "data:image/png;base64," + base64(serverIcon));
  writeMember(writer, "mimeType", "image/png");
  writer.key("sizes");
  writer.beginArray();
  writer.string("64x64");
  writer.endArray();
  writer.endObject();
  writer.endArray();
  writeMember(writer, "websiteUrl", "https://velmora.app");
}

void writeImplementation(JsonWriter& writer, ProtocolRevision revision, const std::string& version,
                         bool isDescribed) {
  writer.beginObject();
  writeMember(writer, "name", "velmora");
  if (isDescribed && hasServerDescription(revision)) writeDescription(writer);
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

void ServerAnswers::writeStatelessMembers(JsonWriter& writer) const { writeStatelessMembers(writer, false); }

void ServerAnswers::writeStatelessMembers(JsonWriter& writer, bool isDescribed) const {
  writeMember(writer, "resultType", "complete");
  writer.key("_meta");
  writer.beginObject();
  writer.key("io.modelcontextprotocol/serverInfo");
  writeImplementation(writer, ProtocolRevision::july2026, version_, isDescribed);
  writer.endObject();
}

const std::string& ServerAnswers::discover() {
  if (!discover_.empty()) return discover_;
  return discover_ = object([this](JsonWriter& writer) {
           writeCapabilities(writer);
           writeMember(writer, "instructions", toolInstructions(form_));
           writer.key("supportedVersions");
           writer.beginArray();
           for (const auto& revision : enumCases<ProtocolRevision>) {
             if (isStateless(revision.value)) writer.string(revision.wireName);
           }
           writer.endArray();
           writeCaching(writer);
           writeStatelessMembers(writer, form_ == ToolForm::extended);
         });
}

const std::string& ServerAnswers::initialize(ProtocolRevision revision) {
  auto& result = initialize_.at(static_cast<std::size_t>(revision));
  if (!result.empty()) return result;
  return result = object([&](JsonWriter& writer) {
           writeCapabilities(writer);
           writeMember(writer, "instructions", toolInstructions(form_));
           writeMember(writer, "protocolVersion", wireName(revision));
           writer.key("serverInfo");
           writeImplementation(writer, revision, version_, form_ == ToolForm::extended);
         });
}

const std::string& ServerAnswers::toolList(ProtocolRevision revision) {
  auto& result = toolLists_.at(static_cast<std::size_t>(revision));
  if (!result.empty()) return result;
  return result = object([&](JsonWriter& writer) {
           writeToolList(writer, revision, form_);
           if (!isStateless(revision)) return;
           writeCaching(writer);
           writeStatelessMembers(writer);
         });
}

}  // namespace velmora
