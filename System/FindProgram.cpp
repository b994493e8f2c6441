#include "System/FindProgram.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace velmora {

namespace {

bool isProgram(const std::filesystem::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::optional<std::filesystem::path> findProgram(const std::string& name, const Environment& environment) {
  const std::string folders =
      environmentValue(environment, "PATH") + ":/usr/local/bin:/opt/homebrew/bin:/usr/bin:/bin";
  for (std::size_t start = 0; start <= folders.size();) {
    const std::size_t end = std::min(folders.find(':', start), folders.size());
    const std::filesystem::path folder = folders.substr(start, end - start);
    // An empty or relative entry means the current folder, which is nobody's choice here.
    if (folder.is_absolute() && isProgram(folder / name)) return folder / name;
    start = end + 1;
  }
  return std::nullopt;
}

}  // namespace velmora
