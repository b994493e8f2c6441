// A client's configuration file: read, and replaced without a byte of the user's being lost.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "BridgeModels/Date.h"
#include "System/FileStanding.h"
#include "System/FileSystem.h"

namespace velmora {

/// The file is left alone. `what()` is a phrase about the file, such as "is a link to ...".
class ConfigFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Why `user` had better not replace a file that stands so; nothing when it may be replaced.
std::optional<std::string> reasonToLeave(const FileStanding& standing, uid_t user);

/// For one thread.
class ConfigFile {
 public:
  /// Reads the file; one that is not there yet reads as empty. Throws ConfigFileError.
  ConfigFile(FileSystem& files, std::filesystem::path path, uid_t user);

  const std::filesystem::path& path() const { return path_; }
  const std::string& text() const { return text_; }
  bool isThere() const { return standing_.has_value(); }

  /// Keeps a copy of the file beside it, for the user alone, under a name with the time. Nothing for a file
  /// that is not there. Throws ConfigFileError.
  std::optional<std::filesystem::path> backUp(Date now);

  /// Replaces the file in one step; mode and owner stay. A copy is kept as `backUp` does, which is the
  /// answer. Throws ConfigFileError, also when the file is not as it was read; then it stays as it is.
  std::optional<std::filesystem::path> replace(std::string_view text, Date now);

 private:
  FileSystem& files_;
  std::filesystem::path path_;
  uid_t user_;
  std::optional<FileStanding> standing_;
  std::string text_;
};

}  // namespace velmora
