// What tests ask of the files that a store wrote.
#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace velmora::testing {

/// Empty where it cannot be read, so also of a process that ends meanwhile; an iterator would throw.
inline std::string contentOf(const std::filesystem::path& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return std::move(content).str();
}

inline void writeFile(const std::filesystem::path& path, const std::string& content) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << content;
}

/// The permission bits, 0 when there is no such file.
inline unsigned modeOf(const std::filesystem::path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777u : 0;
}

/// The names in a directory, sorted.
inline std::vector<std::string> namesIn(const std::filesystem::path& directory) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace velmora::testing
