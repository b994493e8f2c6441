#include "VelmoraHelper/Bridge/BridgeMessages.h"

#include <boost/json/monotonic_resource.hpp>
#include <cctype>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/Tools.h"
#include "LocalControl/LocalControlCodec.h"

namespace velmora {

namespace {

std::string laneOf(const LocalControlCall<JsonMembers>& call) {
  const auto* session = call.arguments.value->get_object().if_contains("sessionId");
  if (!toolTraits(call.operation).changesTerminal || session == nullptr || !session->is_string()) return {};
  std::string lane(session->get_string().data(), session->get_string().size());
  for (auto& character : lane) {
    character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  }
  return lane;
}

bool waitsForItsEffect(const LocalControlCall<JsonMembers>& call) {
  const auto* seconds = call.arguments.value->get_object().if_contains("waitSeconds");
  return call.extended.value_or(false) && seconds != nullptr && numberIn(*seconds).value_or(0) > 0;
}

}  // namespace

BridgeRequest::BridgeRequest(const LocalControlCall<JsonMembers>& call)
    : id(call.requestId),
      tool(call.operation),
      lane(laneOf(call)),
      waits(waitsForItsEffect(call)),
      asksForProgress(call.progress.value_or(false)),
      payload(encodeJson(call)) {}

std::optional<std::string> lastLineIn(std::string_view frame) {
  return withJson(LocalControlCodec::payload(frame), [](const boost::json::value& document) {
    const auto* members = document.if_object();
    const auto* line = members == nullptr ? nullptr : members->if_contains("lastLine");
    return line != nullptr && line->is_string() ? std::optional<std::string>(line->get_string())
                                                : std::nullopt;
  });
}

// The document's values share one growing piece of memory, which goes with the document.
BridgeAnswer::BridgeAnswer(std::string_view frame)
    : document(std::make_shared<const boost::json::value>(parseJson(
          LocalControlCodec::payload(frame),
          boost::json::make_shared_resource<boost::json::monotonic_resource>(frame.size() + 1024)))) {
  JsonReader(*document).read(result);
}

}  // namespace velmora
