// Bytes from a peer that is not to be trusted: a frame, and the request in it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/LocalControlMessages.h"

namespace {

using namespace velmora;

// A frame is refused, or its payload is all of it after the header and frames to the same bytes again.
void checkFrame(std::string_view frame) {
  try {
    const auto payload = LocalControlCodec::payload(frame);
    if (LocalControlCodec::frameOfPayload(payload) != frame) std::abort();
  } catch (const LocalControlCodecError&) {
    // Refused.
  }
}

std::optional<LocalControlRequest> decoded(std::string_view frame) {
  try {
    return LocalControlCodec::decode<LocalControlRequest>(frame);
  } catch (const LocalControlCodecError&) {
    return std::nullopt;
  } catch (const JsonDecodeError&) {
    return std::nullopt;
  }
}

// A request is refused, or it is the same after one more trip.
void checkRequest(std::string_view frame) {
  const auto request = decoded(frame);
  if (!request) return;
  const auto encoded = encodeJson(*request);
  // What was short as it came may be over the limit as we write it (1e9 and 1000000000).
  if (encoded.size() > LocalControlCodec::maximumPayloadSize) return;
  if (decoded(LocalControlCodec::frameOfPayload(encoded)) != request) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  checkFrame(input);
  checkRequest(input);
  // The same bytes as a payload of the right length, so that mutations reach the records behind the header.
  if (size > 0 && size <= LocalControlCodec::maximumPayloadSize) {
    checkRequest(LocalControlCodec::frameOfPayload(input));
  }
  return 0;
}
