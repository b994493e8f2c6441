// The few operations on files that a store is made of, each of which a test can make fail.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// No file that is kept comes near it; what is larger is no file of ours.
inline constexpr std::size_t mostBytesRead = std::size_t{256} << 20;

/// Every operation throws std::system_error when the system refuses. Must be thread-safe.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// False only when there is certainly no such file; one that cannot be looked at exists, and so does one
  /// behind a link that leads nowhere.
  virtual bool exists(const std::filesystem::path& path) = 0;

  /// Only a regular file of `mostBytesRead` at most is read; what else stands there fails at once.
  virtual std::string read(const std::filesystem::path& path) = 0;

  /// When the file's content last changed, in Unix seconds; nothing when there is no such file.
  virtual std::optional<double> lastWritten(const std::filesystem::path& path) = 0;

  /// The regular file to which `path` leads by a link, however many there are; nothing when it is no link or
  /// leads to anything else.
  virtual std::optional<std::filesystem::path> linkTarget(const std::filesystem::path& path) = 0;

  /// What is no directory and whose path begins with `prefix`, in the folder of the prefix; none when there
  /// is no such folder.
  virtual std::vector<std::filesystem::path> filesBeginningWith(const std::filesystem::path& prefix) = 0;

  /// Writes a file that must not exist yet, mode 0600, and flushes it to the disk. After a failure part of
  /// it may be there.
  virtual void create(const std::filesystem::path& path, std::string_view bytes) = 0;

  /// Replaces `to` in one step.
  virtual void rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

  /// Succeeds also when there is no such file.
  virtual void remove(const std::filesystem::path& path) = 0;

  virtual void setMode(const std::filesystem::path& path, mode_t mode) = 0;

  /// Creates the directory and those above it that are missing.
  virtual void createDirectories(const std::filesystem::path& path) = 0;

  /// Flushes a directory's entries to the disk, so that a rename survives a power failure.
  virtual void flushDirectory(const std::filesystem::path& path) = 0;
};

/// The real one. It has no state.
class PosixFileSystem : public FileSystem {
 public:
  bool exists(const std::filesystem::path& path) override;
  std::string read(const std::filesystem::path& path) override;
  std::optional<double> lastWritten(const std::filesystem::path& path) override;
  std::optional<std::filesystem::path> linkTarget(const std::filesystem::path& path) override;
  std::vector<std::filesystem::path> filesBeginningWith(const std::filesystem::path& prefix) override;
  void create(const std::filesystem::path& path, std::string_view bytes) override;
  void rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  void remove(const std::filesystem::path& path) override;
  void setMode(const std::filesystem::path& path, mode_t mode) override;
  void createDirectories(const std::filesystem::path& path) override;
  void flushDirectory(const std::filesystem::path& path) override;
};

}  // namespace velmora
