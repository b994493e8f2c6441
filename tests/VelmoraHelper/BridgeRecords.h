// What the helper sends and gets, as the records that travel.
#pragma once

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlCodec.h"
#include "VelmoraHelper/Bridge/BridgeMessages.h"

namespace velmora::testing {

inline BridgeRequest bridgeRequest(const LocalControlRequest& record) {
  return withJson(encodeJson(record), [](const boost::json::value& document) {
    LocalControlCall<JsonMembers> call;
    JsonReader(document).read(call);
    return BridgeRequest(call);
  });
}

inline BridgeAnswer bridgeAnswer(const LocalControlResponse& record) {
  return BridgeAnswer(LocalControlCodec::frame(record));
}

inline LocalControlRequest recordOf(const BridgeRequest& request) {
  return decodeJson<LocalControlRequest>(request.payload);
}

inline LocalControlResponse recordOf(const BridgeAnswer& answer) {
  return decodeJson<LocalControlResponse>(encodeJson(answer.result));
}

}  // namespace velmora::testing
