#include "VelmoraHelper/Watch/PersonChannel.h"

#include <utility>

#include "LocalControl/LocalControlCodec.h"
#include "VelmoraHelper/Bridge/BridgeContact.h"

namespace velmora {

PersonChannel::PersonChannel(std::vector<std::filesystem::path> places, std::string version)
    : places_(personPlaces(std::move(places))), version_(std::move(version)) {}

void PersonChannel::open() {
  close();
  connection_.emplace(contactBridge(places_).connection);
}

void PersonChannel::close() {
  connection_.reset();
  asked_.reset();
}

void PersonChannel::ask(PersonVerb verb, JSONObject arguments) {
  connection_->begin(personFrame(verb, std::move(arguments), version_));
  asked_ = verb;
}

std::optional<LocalControlResponse> PersonChannel::advance() {
  if (!connection_) return std::nullopt;
  if (!asked_) {
    if (!connection_->isReady()) throw UnixSocketError::disconnected();
    return std::nullopt;
  }
  const auto frame = connection_->advance();
  if (!frame) return std::nullopt;
  asked_.reset();
  return LocalControlCodec::decode<LocalControlResponse>(*frame);
}

}  // namespace velmora
