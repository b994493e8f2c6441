// Turns a record into a frame and a frame back into a record. A frame is the payload's length (32 bits,
// most significant byte first) and the payload, one JSON document in UTF-8; nothing before, between or after.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlCodecError.h"

namespace velmora {

/// Stateless, so every function may be called from any thread. Each throws LocalControlCodecError for what
/// is wrong with the frame.
namespace LocalControlCodec {

inline constexpr std::size_t headerSize = 4;
inline constexpr std::size_t maximumPayloadSize = 1'048'576;

/// The length that a header announces. Throws emptyFrame or frameTooLarge for one that is out of range, so
/// that a reader can refuse a frame before it reads or allocates anything for the payload.
std::size_t payloadSize(const std::array<char, headerSize>& header);

/// The frame of a record that is encoded already.
std::string frameOfPayload(std::string_view payload);

/// Throws JsonEncodeError too.
template <class Value>
std::string frame(const Value& value) {
  return frameOfPayload(encodeJson(value));
}

/// The payload of a complete frame, as a view into `frame`. The checks run in this order: whole header,
/// announced length in range, announced length equal to what follows, valid UTF-8.
std::string_view payload(std::string_view frame);

/// Throws JsonDecodeError too.
template <class Value>
Value decode(std::string_view frame) {
  return decodeJson<Value>(payload(frame));
}

}  // namespace LocalControlCodec

}  // namespace velmora
