// What is said in place of an answer that no frame can carry. A header alone: both channels say it.
#pragma once

#include <string>
#include <string_view>

#include "BridgeModels/StructuredError.h"
#include "LocalControl/LocalControlCodec.h"

namespace velmora {

inline StructuredError answerTooLarge(std::string_view operation, std::size_t bytes) {
  return {
      .code = ErrorCode::internalError,
      .message = "The answer has " + std::to_string(bytes) + " bytes; " +
                 std::to_string(LocalControlCodec::maximumPayloadSize) + " fit into one message.",
      .operation = std::string(operation),
      .retryable = false,
      .recoverySuggestion = "Ask for less: a smaller maxCharacters, or close sessions that are not needed."};
}

}  // namespace velmora
