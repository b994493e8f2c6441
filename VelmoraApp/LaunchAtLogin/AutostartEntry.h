// Launch at login on Linux: an entry in the autostart folder, which every desktop reads.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "System/Environment.h"
#include "System/FileSystem.h"
#include "VelmoraApp/LaunchAtLogin/DesktopEntry.h"
#include "VelmoraApp/LaunchAtLogin/LoginItem.h"

namespace velmora {

/// For the main thread. Reads the person's folder and the system's as every desktop does at login, and writes
/// to the person's only, in one step. Keys that it does not need to change stay as they are.
class AutostartEntry final : public LoginItem {
 public:
  /// `files` must outlive it. `program` is an absolute path.
  AutostartEntry(FileSystem& files, Environment environment, std::filesystem::path program);

  /// Whether the desktop that runs now would start the entry. An entry that cannot be read starts nothing.
  bool isEnabled() const override;

  void setEnabled(bool enabled) override;

  /// Makes an entry of the person's that is switched on, and names nothing but this program at another
  /// place, name this one. Throws when it cannot be written.
  void followProgram();

 private:
  std::optional<DesktopEntry> read(const std::filesystem::path& file) const;
  bool isSwitchedOn(const DesktopEntry& entry) const;
  bool wouldStart(const DesktopEntry& entry) const;
  bool namesOnlyProgram(const DesktopEntry& entry) const;
  bool systemWouldStart() const;
  void switchOn(DesktopEntry& entry) const;
  void showHere(DesktopEntry& entry) const;
  void nameProgram(DesktopEntry& entry) const;
  DesktopEntry newEntry() const;
  void write(const DesktopEntry& entry) const;

  FileSystem& files_;
  const Environment environment_;
  const std::filesystem::path program_;
  const std::filesystem::path ownFile_;  // empty without a home
  const std::vector<std::filesystem::path> systemFiles_;
  const std::vector<std::string> desktops_;
};

}  // namespace velmora
