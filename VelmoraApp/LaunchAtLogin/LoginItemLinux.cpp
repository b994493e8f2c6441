#include <spdlog/spdlog.h>

#include "VelmoraApp/LaunchAtLogin/AutostartEntry.h"
#include "VelmoraApp/LaunchAtLogin/LoginItem.h"

namespace velmora {

std::unique_ptr<LoginItem> makeLoginItem(const Environment& environment,
                                         const std::filesystem::path& program) {
  static PosixFileSystem files;  // it has no state
  auto entry = std::make_unique<AutostartEntry>(files, environment, program);
  try {
    entry->followProgram();
  } catch (const std::exception& error) {
    spdlog::warn("the login item still names the program's old place: {}", error.what());
  }
  return entry;
}

}  // namespace velmora
