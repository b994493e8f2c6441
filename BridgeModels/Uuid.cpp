#include "BridgeModels/Uuid.h"

#include <unistd.h>
#if __has_include(<sys/random.h>)
#include <sys/random.h>
#endif

#include <cerrno>
#include <cstring>
#include <system_error>

namespace velmora {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isHyphenPosition(std::size_t index) {
  return index == 8 || index == 13 || index == 18 || index == 23;
}

std::optional<unsigned> hexDigit(char character) {
  if (character >= '0' && character <= '9') return static_cast<unsigned>(character - '0');
  if (character >= 'a' && character <= 'f') return static_cast<unsigned>(character - 'a' + 10);
  if (character >= 'A' && character <= 'F') return static_cast<unsigned>(character - 'A' + 10);
  return std::nullopt;
}

}  // namespace

Uuid Uuid::random() {
  Uuid uuid;
  if (::getentropy(uuid.bytes.data(), uuid.bytes.size()) != 0) {
    throw std::system_error(errno, std::generic_category(), "getentropy");
  }
  uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0Fu) | 0x40u);  // version 4
  uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3Fu) | 0x80u);  // RFC 4122 variant
  return uuid;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
  if (text.size() != textLength) return std::nullopt;
  Uuid uuid;
  std::size_t digits = 0;
  for (std::size_t index = 0; index < textLength; ++index) {
    if (isHyphenPosition(index)) {
      if (text[index] != '-') return std::nullopt;
      continue;
    }
    const auto digit = hexDigit(text[index]);
    if (!digit) return std::nullopt;
    auto& byte = uuid.bytes[digits / 2];
    byte = static_cast<std::uint8_t>(static_cast<unsigned>(byte) << 4 | *digit);
    ++digits;
  }
  return uuid;
}

std::string Uuid::toString() const {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(textLength);
  for (const auto byte : bytes) {
    if (isHyphenPosition(text.size())) text.push_back('-');
    text.push_back(digits[byte >> 4]);
    text.push_back(digits[byte & 0x0Fu]);
  }
  return text;
}

}  // namespace velmora

std::size_t std::hash<velmora::Uuid>::operator()(const velmora::Uuid& uuid) const noexcept {
  std::size_t value = 0;  // a random UUID's bytes are already spread evenly
  std::memcpy(&value, uuid.bytes.data() + uuid.bytes.size() - sizeof value, sizeof value);
  return value;
}
