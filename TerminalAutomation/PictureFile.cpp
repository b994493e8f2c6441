#include "TerminalAutomation/PictureFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "System/PrivateFolder.h"

namespace velmora {

namespace {

struct PicturePlace {
  PicturePlace(const std::filesystem::path& temporaryDirectory, const Uuid& id)
      : path(std::filesystem::absolute(temporaryDirectory) / "Velmora" /
             ("terminal-" + id.toString() + ".png")),
        folder(openPrivateFolder(path.parent_path())) {}

  std::filesystem::path path;
  FileDescriptor folder;
};

}  // namespace

std::filesystem::path pictureFileForProgram(const std::filesystem::path& temporaryDirectory, const Uuid& id) {
  return PicturePlace(temporaryDirectory, id).path;
}

std::filesystem::path writePictureFile(const std::filesystem::path& temporaryDirectory, const Uuid& id,
                                       std::string_view png) {
  const PicturePlace place(temporaryDirectory, id);
  const std::string name = place.path.filename();
  const auto fail = [&place](int error) {
    throw std::system_error(error, std::generic_category(), place.path.string());
  };
  const FileDescriptor file(::openat(place.folder.get(), name.c_str(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                     S_IRUSR | S_IWUSR));
  if (!file) fail(errno);
  if (!writeTo(file, png).empty()) {
    const int error = errno;
    ::unlinkat(place.folder.get(), name.c_str(), 0);
    fail(error);
  }
  return place.path;
}

}  // namespace velmora
