// Launch at login on Linux: an entry in the autostart folder, which every desktop reads.
#pragma once

#include <glib.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "System/Environment.h"
#include "System/FileSystem.h"

namespace velmora {

/// For the main thread. Reads the user's entry as every desktop does at login, and writes it in one step.
/// Keys that need not change stay as they are. System-wide entries are ignored.
class AutostartEntry {
 public:
  /// `files` must outlive it. `program` is an absolute path.
  AutostartEntry(FileSystem& files, const Environment& environment, std::filesystem::path program);

  /// Whether the desktop that runs now would start the entry. An entry that cannot be read starts nothing.
  bool isEnabled() const;

  /// Throws what derives from std::exception when the entry cannot be changed; then it is as it was.
  void setEnabled(bool enabled);

  /// Updates an entry that runs only this program, but from another place. Throws when it cannot be written.
  void followProgram();

 private:
  struct Unref {
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
  };
  using Entry = std::unique_ptr<GKeyFile, Unref>;

  Entry read() const;
  Entry newEntry() const;
  void write(GKeyFile* entry) const;
  void nameProgram(GKeyFile* entry) const;
  bool namesOnlyProgram(GKeyFile* entry) const;

  FileSystem& files_;
  const std::filesystem::path program_;
  const std::filesystem::path file_;  // empty without a home
};

/// `program` without arguments, as the key Exec wants it: quoted, so that no character of its path means
/// anything. Throws std::invalid_argument when a desktop file cannot hold the path.
std::string execLine(const std::filesystem::path& program);

/// The program of an Exec line that consists of nothing else; nothing for any other line.
std::optional<std::filesystem::path> programAlone(const std::string& execLine);

}  // namespace velmora
