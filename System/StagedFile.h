// Replaces a file in one step: the new content is written beside it and flushed, then renamed over it. A
// crash at any moment leaves the old content or the new, never a mixture.
#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

#include "System/FileSystem.h"

namespace velmora {

/// New content that waits beside its file, under a name of its own: whoever else replaces the file at the
/// same time, nobody's content is mixed with another's. Unless it was committed, destruction removes it. For
/// one thread.
class StagedFile {
 public:
  /// Writes the new content, mode 0600. Throws std::system_error; the file is untouched.
  StagedFile(FileSystem& files, std::filesystem::path file, std::string_view bytes);
  ~StagedFile();
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;

  /// Where the content waits, for whoever gives it a mode or a group before `commit`.
  const std::filesystem::path& place() const { return place_; }

  /// Puts the content in place. Throws std::system_error when it is not. The result says why a power failure
  /// could still bring the old content back; empty when it cannot.
  std::error_code commit();

  /// Removes what crashes left of new content for `file`. For when nobody is replacing it. Throws
  /// std::system_error.
  static void removeLeftovers(FileSystem& files, const std::filesystem::path& file);

 private:
  void discard() noexcept;

  FileSystem& files_;
  std::filesystem::path file_;
  std::filesystem::path place_;
  bool waits_ = true;
};

}  // namespace velmora
