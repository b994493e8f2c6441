// Linux's half of ProgramPath.h.
#include <system_error>

#include "VelmoraHelper/Commands/ProgramPath.h"

namespace velmora {

std::filesystem::path runningProgramFile() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

}  // namespace velmora
