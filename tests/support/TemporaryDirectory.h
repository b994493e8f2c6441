// A directory of a test's own under /tmp (short, so that socket paths fit), removed with all that is in it.
#pragma once

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace velmora {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    char name[] = "/tmp/velmora-XXXXXX";
    if (::mkdtemp(name) == nullptr) throw std::system_error(errno, std::generic_category(), "mkdtemp");
    path_ = name;
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

}  // namespace velmora
