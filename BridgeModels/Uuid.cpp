#include "BridgeModels/Uuid.h"

#include <unistd.h>
#if __has_include(<sys/random.h>)
#include <sys/random.h>
#endif

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace velmora {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isHyphenPosition(std::size_t index) {
  return index == 8 || index == 13 || index == 18 || index == 23;
}

constexpr unsigned noDigit = 16;

// The value of each character as a hexadecimal digit; a history holds tens of thousands of ids.
constexpr auto hexDigits = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(noDigit);
  for (unsigned value = 0; value < 16; ++value) {
    values[static_cast<unsigned char>("0123456789ABCDEF"[value])] = static_cast<std::uint8_t>(value);
    values[static_cast<unsigned char>("0123456789abcdef"[value])] = static_cast<std::uint8_t>(value);
  }
  return values;
}();

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
  unsigned seen = 0;
  std::size_t index = 0;
  for (auto& byte : uuid.bytes) {
    if (isHyphenPosition(index) && text[index++] != '-') return std::nullopt;
    const unsigned high = hexDigits[static_cast<unsigned char>(text[index++])];
    const unsigned low = hexDigits[static_cast<unsigned char>(text[index++])];
    seen |= high | low;
    byte = static_cast<std::uint8_t>(high << 4 | low);
  }
  if (seen >= noDigit) return std::nullopt;
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
