#include "VelmoraHelper/HelperLog.h"

#include <cstdio>
#include <string>

namespace velmora {

void HelperLog::write(std::string_view text) const {
  if (!on_) return;
  // One call for the whole line, so that lines of two programs do not mix.
  const auto line = std::string("velmora: ").append(text).append("\n");
  std::fputs(line.c_str(), stderr);
}

}  // namespace velmora
