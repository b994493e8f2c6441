#include "TerminalAutomation/Tmux/PictureFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "System/PrivateFolder.h"

namespace velmora {

namespace {

[[noreturn]] void fail(int error, const std::filesystem::path& path) {
  throw std::system_error(error, std::generic_category(), path.string());
}

}  // namespace

std::filesystem::path writePictureFile(const std::filesystem::path& temporaryDirectory, const Uuid& id,
                                       std::string_view png) {
  const std::filesystem::path folderPath = std::filesystem::absolute(temporaryDirectory) / "Velmora";
  const auto folder = openPrivateFolder(folderPath);
  const std::string name = "terminal-" + id.toString() + ".png";
  const FileDescriptor file(::openat(
      folder.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!file) fail(errno, folderPath / name);
  if (!writeTo(file, png).empty()) {
    const int error = errno;
    unlinkat(folder.get(), name.c_str(), 0);
    fail(error, folderPath / name);
  }
  return folderPath / name;
}

}  // namespace velmora
