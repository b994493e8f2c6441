#include "VelmoraHelper/Tools/ToolResultJson.h"

#include <filesystem>

#include "BridgeModels/Json/JsonAs.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Tools.h"
#include "VelmoraHelper/Tools/CapturedPicture.h"

namespace velmora {

namespace {

// The picture's path, or nothing when the answer names none.
std::optional<std::string> picturePath(const BridgeAnswer& answer) {
  if (!answer.result.data) return std::nullopt;
  const auto* payload = answer.result.data->value->if_object();
  const auto* path = payload == nullptr ? nullptr : payload->if_contains("imagePath");
  if (path == nullptr || !path->is_string()) return std::nullopt;
  return std::string(path->get_string().data(), path->get_string().size());
}

void writePicture(JsonWriter& writer, const std::string& path, const CapturedPicture& picture,
                  ProtocolRevision revision) {
  constexpr std::string_view mimeType = "image/png";
  if (hasResourceLinks(revision)) {
    writer.beginObject();
    writeMember(writer, "mimeType", mimeType);
    writeMember(writer, "name", std::filesystem::path(path).filename().string());
    writeMember(writer, "size", picture.bytes);
    writeMember(writer, "type", "resource_link");
    writeMember(writer, "uri", fileUri(path));
    writer.endObject();
  }
  if (picture.base64) {
    writer.beginObject();
    writeMember(writer, "type", "image");
    writeMember(writer, "mimeType", mimeType);
    writeMember(writer, "data", *picture.base64);
    writer.endObject();
  }
}

std::string envelopeOf(ToolName tool, const ToolResult<JsonPart>& result) {
  return visitTool(tool, [&]<class Tool>(const Tool&) {
    ToolResult<JsonAs<typename Tool::Payload>> envelope{
        .requestId = result.requestId, .ok = result.ok, .warnings = result.warnings, .error = result.error};
    if (result.data) envelope.data = {*result.data};
    return encodeJson(envelope, JsonFormat::people);
  });
}

// Clients show a failure's text to the user as it is, so it begins with words.
std::string textOf(const BridgeAnswer& answer, const std::string& envelope) {
  const auto& error = answer.result.error;
  if (!error) return envelope;
  const std::string code(wireName(error->code));
  return error->message + " " + error->recoverySuggestion + " (" + code + ")\n" + envelope;
}

}  // namespace

void writeToolResult(JsonWriter& writer, ToolName tool, const BridgeAnswer& answer, ProtocolRevision revision,
                     std::size_t largestInlinePicture) {
  const auto envelope = envelopeOf(tool, answer.result);
  writer.key("content");
  writer.beginArray();
  writer.beginObject();
  writeMember(writer, "type", "text");
  writeMember(writer, "text", textOf(answer, envelope));
  writer.endObject();
  if (const auto path = picturePath(answer)) {
    if (const auto picture = readPicture(*path, largestInlinePicture)) {
      writePicture(writer, *path, *picture, revision);
    }
  }
  writer.endArray();
  if (hasStructuredContent(revision)) {
    writer.key("structuredContent");
    writer.raw(envelope);
  }
  writeMember(writer, "isError", !answer.result.ok);
}

}  // namespace velmora
