#include "VelmoraHelper/Commands/PlainText.h"

#include "System/Utf8.h"

namespace velmora {

std::string plainText(std::string_view text) {
  const std::string valid = repairUtf8(text);
  std::string plain;
  plain.reserve(valid.size());
  for (std::size_t index = 0; index < valid.size(); ++index) {
    const auto byte = static_cast<unsigned char>(valid[index]);
    // U+0080 to U+009F are control characters of two bytes.
    const bool isLateControl = byte == 0xC2 && static_cast<unsigned char>(valid[index + 1]) < 0xA0;
    if (isLateControl) ++index;
    plain.push_back(isLateControl || byte < 0x20 || byte == 0x7F ? '?' : valid[index]);
  }
  return plain;
}

}  // namespace velmora
