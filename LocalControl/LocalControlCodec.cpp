#include "LocalControl/LocalControlCodec.h"

#include <algorithm>
#include <cstdint>

#include "System/Utf8.h"

namespace velmora {

namespace LocalControlCodec {

namespace {

std::size_t checkedSize(std::size_t size) {
  if (size == 0) throw LocalControlCodecError(LocalControlCodecError::emptyFrame);
  if (size > maximumPayloadSize) throw LocalControlCodecError(LocalControlCodecError::frameTooLarge);
  return size;
}

}  // namespace

std::size_t payloadSize(const std::array<char, headerSize>& header) {
  std::uint32_t size = 0;
  for (const char byte : header) size = size << 8 | static_cast<unsigned char>(byte);
  return checkedSize(size);
}

std::string frameOfPayload(std::string_view payload) {
  const auto size = checkedSize(payload.size());
  std::string frame;
  frame.reserve(headerSize + size);
  for (const int shift : {24, 16, 8, 0}) frame.push_back(static_cast<char>(size >> shift & 0xFF));
  return frame.append(payload);
}

std::string_view payload(std::string_view frame) {
  if (frame.size() < headerSize) throw LocalControlCodecError(LocalControlCodecError::invalidFrame);
  std::array<char, headerSize> header{};
  std::copy_n(frame.begin(), headerSize, header.begin());
  const auto announced = payloadSize(header);
  const auto payload = frame.substr(headerSize);
  if (payload.size() != announced || !isValidUtf8(payload)) {
    throw LocalControlCodecError(LocalControlCodecError::invalidFrame);
  }
  return payload;
}

}  // namespace LocalControlCodec

}  // namespace velmora
