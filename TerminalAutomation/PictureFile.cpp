#include "TerminalAutomation/PictureFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

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

constexpr std::size_t mostPictures = 50;
constexpr std::time_t longestKept = std::time_t{24} * 60 * 60;

bool isPictureName(std::string_view name) {
  constexpr std::string_view begin = "terminal-";
  constexpr std::string_view end = ".png";
  return name.starts_with(begin) && name.ends_with(end) && name.size() > begin.size() + end.size() &&
         Uuid::parse(name.substr(begin.size(), name.size() - begin.size() - end.size()));
}

/// What cannot be looked at or removed stays: a picture was asked for, not a clean folder.
void removeOldPictures(const FileDescriptor& folder, const std::string& latest) {
  struct stat status {};
  if (::fstatat(folder.get(), latest.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return;
  const std::time_t now = status.st_mtime;
  const int own = ::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (own < 0) return;
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(own), ::closedir);
  if (!listing) {
    ::close(own);
    return;
  }
  std::vector<std::pair<std::time_t, std::string>> pictures;
  while (const dirent* const entry = ::readdir(listing.get())) {
    const std::string name = entry->d_name;
    if (name == latest || !isPictureName(name)) continue;
    if (::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
    if (S_ISREG(status.st_mode) && status.st_uid == ::geteuid()) pictures.emplace_back(status.st_mtime, name);
  }
  std::sort(pictures.rbegin(), pictures.rend());
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    if (i + 1 >= mostPictures || pictures[i].first < now - longestKept)
      ::unlinkat(folder.get(), pictures[i].second.c_str(), 0);
  }
}

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
  removeOldPictures(place.folder, name);
  return place.path;
}

}  // namespace velmora
