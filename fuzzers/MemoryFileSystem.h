// Files in memory, so that a fuzz target of a store costs no disk.
#pragma once

#include <map>
#include <string>
#include <system_error>

#include "System/FileSystem.h"

namespace velmora {

/// For one thread. Folders are there as soon as they are needed; modes are forgotten.
class MemoryFileSystem final : public FileSystem {
 public:
  bool exists(const std::filesystem::path& path) override { return files_.count(path) != 0; }
  std::string read(const std::filesystem::path& path) override { return at(path)->second; }
  std::optional<double> lastWritten(const std::filesystem::path&) override { return std::nullopt; }
  std::optional<std::filesystem::path> linkTarget(const std::filesystem::path&) override {
    return std::nullopt;
  }
  std::vector<std::filesystem::path> filesBeginningWith(const std::filesystem::path& prefix) override {
    std::vector<std::filesystem::path> found;
    for (const auto& [path, bytes] : files_) {
      if (path.string().starts_with(prefix.string())) found.push_back(path);
    }
    return found;
  }
  void create(const std::filesystem::path& path, std::string_view bytes) override {
    if (!files_.emplace(path, bytes).second)
      throw std::system_error(std::make_error_code(std::errc::file_exists));
  }
  void rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
    auto file = files_.extract(at(from));
    files_.erase(to);
    file.key() = to;
    files_.insert(std::move(file));
  }
  void remove(const std::filesystem::path& path) override { files_.erase(path); }
  void setMode(const std::filesystem::path&, mode_t) override {}
  void createDirectories(const std::filesystem::path&) override {}
  void flushDirectory(const std::filesystem::path&) override {}

 private:
  using Files = std::map<std::filesystem::path, std::string>;

  Files::iterator at(const std::filesystem::path& path) {
    const auto file = files_.find(path);
    if (file == files_.end()) {
      throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory));
    }
    return file;
  }

  Files files_;
};

}  // namespace velmora
