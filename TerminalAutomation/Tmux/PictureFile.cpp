#include "TerminalAutomation/Tmux/PictureFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace velmora {

namespace {

[[noreturn]] void fail(int error, const std::filesystem::path& path) {
  throw std::system_error(error, std::generic_category(), path.string());
}

class OpenFile {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  ~OpenFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

int writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

}  // namespace

std::filesystem::path writePictureFile(const std::filesystem::path& temporaryDirectory, const Uuid& id,
                                       std::string_view png) {
  const std::filesystem::path folderPath = std::filesystem::absolute(temporaryDirectory) / "Velmora";
  std::filesystem::create_directories(folderPath.parent_path());
  if (mkdir(folderPath.c_str(), S_IRWXU) != 0 && errno != EEXIST) fail(errno, folderPath);
  // Checked and used through one descriptor, so nobody can exchange the folder in between.
  const OpenFile folder(open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (folder.get() < 0) fail(errno, folderPath);
  struct stat status {};
  if (fstat(folder.get(), &status) != 0) fail(errno, folderPath);
  if (status.st_uid != geteuid()) fail(EPERM, folderPath);
  if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0 && fchmod(folder.get(), S_IRWXU) != 0)
    fail(errno, folderPath);

  const std::string name = "terminal-" + id.toString() + ".png";
  const OpenFile file(openat(folder.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                             S_IRUSR | S_IWUSR));
  if (file.get() < 0) fail(errno, folderPath / name);
  if (const int error = writeAll(file.get(), png); error != 0) {
    unlinkat(folder.get(), name.c_str(), 0);
    fail(error, folderPath / name);
  }
  return folderPath / name;
}

}  // namespace velmora
