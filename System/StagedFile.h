// Replaces a file in one step: the new content is written beside it and flushed, then renamed over it. A
// crash at any moment leaves the old content or the new, never a mixture.
#pragma once

#include <filesystem>
#include <string_view>

#include "System/FileSystem.h"

namespace velmora {

/// New content that waits beside its file. Unless it was committed, destruction removes it. For one thread,
/// and one at a time for each file: what a crash left behind is written over.
class StagedFile {
 public:
  /// Writes the new content, mode 0600. Throws std::system_error; the file is untouched.
  StagedFile(FileSystem& files, std::filesystem::path file, std::string_view bytes);
  ~StagedFile();
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;

  /// Puts the content in place. Throws std::system_error.
  void commit();

  /// Where new content of `file` waits.
  static std::filesystem::path placeBeside(const std::filesystem::path& file);

 private:
  void discard() noexcept;

  FileSystem& files_;
  std::filesystem::path file_;
  std::filesystem::path place_;
  bool waits_ = true;
};

}  // namespace velmora
