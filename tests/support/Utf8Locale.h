// The character set by which widths in a terminal are counted.
#pragma once

#include <clocale>

namespace velmora::testing {

inline void useUtf8Locale() {
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) std::setlocale(LC_CTYPE, "en_US.UTF-8");
}

}  // namespace velmora::testing
