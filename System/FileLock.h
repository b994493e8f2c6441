// A lock that only one process at a time can have, and that ends with its holder however that ends.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "System/FileDescriptor.h"

namespace velmora {

/// The lock on a file, held from construction to destruction, and the file's text. The file itself stays.
/// Movable; for one thread.
class FileLock {
 public:
  /// Takes the lock; makes the file, mode 0600, when there is none. Nothing when another holder has it.
  /// Throws std::system_error when the file cannot be opened, is a link or a directory, or cannot be locked.
  static std::optional<FileLock> take(const std::filesystem::path& path);

  /// Short; what is beyond 4 KiB is not read. Throws std::system_error.
  std::string text() const;

  /// Replaces the text and flushes it to the disk. Throws std::system_error.
  void setText(std::string_view text);

 private:
  FileLock(FileDescriptor file, std::filesystem::path path)
      : file_(std::move(file)), path_(std::move(path)) {}

  FileDescriptor file_;
  std::filesystem::path path_;
};

/// What a lock's holder wrote; empty when that cannot be read.
std::string textOfLock(const std::filesystem::path& path);

}  // namespace velmora
