// The half of ProgramPath.h that belongs to macOS.
#include <mach-o/dyld.h>

#include <cstdint>
#include <string>
#include <system_error>

#include "VelmoraHelper/Commands/ProgramPath.h"

namespace velmora {

std::filesystem::path runningProgramFile() {
  std::uint32_t size = 0;
  _NSGetExecutablePath(nullptr, &size);
  std::string path(size, '\0');
  if (_NSGetExecutablePath(path.data(), &size) != 0) return {};
  std::error_code error;
  return std::filesystem::canonical(path.c_str(), error);
}

}  // namespace velmora
