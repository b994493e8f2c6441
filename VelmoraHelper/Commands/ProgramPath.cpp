// Apart from the commands, all of which it tells where this program lies.
#include "VelmoraHelper/Commands/ProgramPath.h"

#include <system_error>

#include "System/FindProgram.h"

namespace velmora {

std::filesystem::path programPath(const std::string& invokedAs, const Environment& environment,
                                  const std::filesystem::path& runningFile) {
  std::error_code error;
  std::filesystem::path stated;
  if (invokedAs.find('/') != std::string::npos) {
    stated = std::filesystem::absolute(invokedAs, error).lexically_normal();
  } else if (const auto found = findProgram(invokedAs, environment)) {
    stated = found->lexically_normal();
  }
  // Whoever started this program chose its argument zero freely.
  return std::filesystem::equivalent(stated, runningFile, error) ? stated : runningFile;
}

}  // namespace velmora
