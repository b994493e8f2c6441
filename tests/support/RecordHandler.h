// A server's handler for tests that think in records, not in JSON.
#pragma once

#include <utility>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlMessages.h"
#include "LocalControl/LocalControlServer.h"

namespace velmora::testing {

/// `answer` takes a LocalControlRequest and returns a LocalControlResponse.
template <class Answer>
LocalControlHandler recordHandler(Answer answer) {
  return [answer = std::move(answer)](std::string_view request, const Caller&) {
    return encodeJson(answer(decodeJson<LocalControlRequest>(request)));
  };
}

}  // namespace velmora::testing
