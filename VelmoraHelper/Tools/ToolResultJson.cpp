#include "VelmoraHelper/Tools/ToolResultJson.h"

#include <filesystem>

#include "BridgeModels/Json/JsonEncoding.h"
#include "VelmoraHelper/Tools/CapturedPicture.h"
#include "VelmoraHelper/Tools/DatesForPeople.h"

namespace velmora {

namespace {

// The content blocks of the picture that the answer names; empty when it names none that can be read.
std::string pictureContent(const LocalControlResponse& response, ProtocolRevision revision,
                           std::size_t largestInlinePicture) {
  const auto* path = response.data ? response.data->find("imagePath") : nullptr;
  if (path == nullptr || path->string() == nullptr) return {};
  const auto picture = readPicture(*path->string(), largestInlinePicture);
  if (!picture) return {};
  std::string content;
  if (hasResourceLinks(revision)) {
    content +=
        "," + encodeJson(JSONObject{{"type", "resource_link"},
                                    {"uri", fileUri(*path->string())},
                                    {"name", std::filesystem::path(*path->string()).filename().string()},
                                    {"mimeType", "image/png"},
                                    {"size", static_cast<std::int64_t>(picture->bytes)}});
  }
  if (picture->base64) {
    content.append(R"(,{"type":"image","mimeType":"image/png","data":")")
        .append(*picture->base64)
        .append("\"}");
  }
  return content;
}

}  // namespace

std::string toolResultMembers(LocalControlResponse response, ProtocolRevision revision,
                              std::size_t largestInlinePicture) {
  if (response.data) writeDatesForPeople(*response.data);
  const auto envelope = encodeJson(response);
  std::string members(R"("content":[{"type":"text","text":)");
  members.append(encodeJson(envelope)).append("}");
  members.append(pictureContent(response, revision, largestInlinePicture)).append("]");
  if (hasStructuredContent(revision)) members.append(R"(,"structuredContent":)").append(envelope);
  return members.append(R"(,"isError":)").append(response.ok ? "false" : "true");
}

}  // namespace velmora
