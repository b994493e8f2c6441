// A file of its own although short: the only one of the picture that asks ICU.
#include "TerminalAutomation/Tmux/Picture/CellWidth.h"

#include <unicode/uchar.h>

#include <cstdint>

namespace velmora {

int codePointWidth(char32_t codePoint) {
  if (codePoint < 0x20) return 0;
  if (codePoint < 0x7F) return 1;
  if (codePoint < 0xA0) return 0;
  if (codePoint < 0x300) return 1;  // also the soft hyphen, which terminals show
  if (codePoint > 0x10FFFF) return 1;
  if ((codePoint >= 0x1160 && codePoint <= 0x11FF) || (codePoint >= 0xD7B0 && codePoint <= 0xD7FF)) return 0;

  const auto c = static_cast<UChar32>(codePoint);
  const auto category = static_cast<std::uint32_t>(U_MASK(u_charType(c)));
  if ((category & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK)) != 0) return 0;
  const auto width = static_cast<UEastAsianWidth>(u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH));
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

}  // namespace velmora
