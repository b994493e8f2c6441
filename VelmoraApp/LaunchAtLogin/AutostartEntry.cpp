#include "VelmoraApp/LaunchAtLogin/AutostartEntry.h"

#include <unistd.h>

#include <algorithm>
#include <stdexcept>

#include "System/Environment.h"
#include "System/StagedFile.h"

namespace velmora {

namespace {

constexpr const char* fileName = "app.velmora.Velmora.desktop";

// Written by desktops in whose settings the person switched the entry off.
constexpr const char* desktopSwitch = "X-GNOME-Autostart-enabled";

std::vector<std::string> partsOf(const std::string& text) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= text.size();) {
    const auto end = std::min(text.find(':', begin), text.size());
    if (end > begin) parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

std::filesystem::path ownFile(const Environment& environment) {
  const auto directory = baseDirectory(environment, "XDG_CONFIG_HOME", ".config");
  return directory.empty() ? directory : directory / "autostart" / fileName;
}

std::vector<std::filesystem::path> systemFiles(const Environment& environment) {
  auto directories = environmentValue(environment, "XDG_CONFIG_DIRS");
  if (directories.empty()) directories = "/etc/xdg";
  std::vector<std::filesystem::path> files;
  for (const std::filesystem::path directory : partsOf(directories)) {
    if (directory.is_absolute()) files.push_back(directory / "autostart" / fileName);
  }
  return files;
}

bool contains(const std::vector<std::string>& list, const std::string& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

bool canRun(const std::filesystem::path& program) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(program, ignored) && ::access(program.c_str(), X_OK) == 0;
}

bool canRun(const std::filesystem::path& program, const Environment& environment) {
  if (program.is_absolute()) return canRun(program);
  const auto folders = partsOf(environmentValue(environment, "PATH"));
  return std::any_of(folders.begin(), folders.end(),
                     [&](const auto& folder) { return canRun(folder / program); });
}

// The desktops stand in order of preference; the first that the entry speaks of decides.
bool showsIn(const DesktopEntry& entry, const std::vector<std::string>& desktops) {
  const auto only = entry.list("OnlyShowIn");
  const auto excluded = entry.list("NotShowIn");
  for (const auto& desktop : desktops) {
    if (only && contains(*only, desktop)) return true;
    if (excluded && contains(*excluded, desktop)) return false;
  }
  return !only;
}

}  // namespace

AutostartEntry::AutostartEntry(FileSystem& files, Environment environment, std::filesystem::path program)
    : files_(files),
      environment_(std::move(environment)),
      program_(std::move(program)),
      ownFile_(ownFile(environment_)),
      systemFiles_(systemFiles(environment_)),
      desktops_(partsOf(environmentValue(environment_, "XDG_CURRENT_DESKTOP"))) {}

bool AutostartEntry::isEnabled() const {
  if (ownFile_.empty() || !files_.exists(ownFile_)) return systemWouldStart();
  const auto own = read(ownFile_);
  return own && wouldStart(*own);
}

void AutostartEntry::setEnabled(bool enabled) {
  if (ownFile_.empty()) throw std::runtime_error("neither XDG_CONFIG_HOME nor HOME names a directory");
  if (enabled == isEnabled()) return;
  auto entry = read(ownFile_);
  if (enabled) {
    if (!entry) entry = newEntry();
    switchOn(*entry);
    write(*entry);
  } else if (systemWouldStart()) {
    if (!entry) entry = newEntry();
    entry->set("Hidden", true);
    write(*entry);
  } else {
    files_.remove(ownFile_);
    files_.flushDirectory(ownFile_.parent_path());
  }
}

void AutostartEntry::followProgram() {
  if (ownFile_.empty()) return;
  auto entry = read(ownFile_);
  if (!entry || !isSwitchedOn(*entry)) return;
  if (!namesOnlyProgram(*entry) || entry->text("Exec") == execLine(program_)) return;
  nameProgram(*entry);
  write(*entry);
}

std::optional<DesktopEntry> AutostartEntry::read(const std::filesystem::path& file) const {
  try {
    if (!files_.exists(file)) return std::nullopt;
    return DesktopEntry::parse(files_.read(file));
  } catch (const std::system_error&) {
    return std::nullopt;  // the desktop cannot read it either
  }
}

// Whatever its program is.
bool AutostartEntry::isSwitchedOn(const DesktopEntry& entry) const {
  return entry.text("Type") == "Application" && !entry.text("Exec").value_or("").empty() &&
         !entry.boolean("Hidden").value_or(false) && entry.boolean(desktopSwitch).value_or(true) &&
         showsIn(entry, desktops_);
}

bool AutostartEntry::wouldStart(const DesktopEntry& entry) const {
  const auto condition = entry.text("TryExec");
  return isSwitchedOn(entry) && (!condition || canRun(*condition, environment_));
}

// At this place or another. A line that does more is the person's own.
bool AutostartEntry::namesOnlyProgram(const DesktopEntry& entry) const {
  const auto named = programAlone(entry.text("Exec").value_or(""));
  return named && named->is_absolute() && named->filename() == program_.filename();
}

// Only the first file counts; it hides those in less important folders.
bool AutostartEntry::systemWouldStart() const {
  const auto first = std::find_if(systemFiles_.begin(), systemFiles_.end(),
                                  [this](const auto& file) { return files_.exists(file); });
  if (first == systemFiles_.end()) return false;
  const auto entry = read(*first);
  return entry && wouldStart(*entry);
}

void AutostartEntry::switchOn(DesktopEntry& entry) const {
  entry.set("Type", std::string("Application"));
  entry.remove("Hidden");
  entry.set(desktopSwitch, true);
  showHere(entry);
  if (entry.text("Exec").value_or("").empty() || namesOnlyProgram(entry)) nameProgram(entry);
  if (!wouldStart(entry)) entry.remove("TryExec");
}

void AutostartEntry::showHere(DesktopEntry& entry) const {
  if (showsIn(entry, desktops_)) return;
  if (auto excluded = entry.list("NotShowIn")) {
    std::erase_if(*excluded, [this](const auto& desktop) { return contains(desktops_, desktop); });
    entry.set("NotShowIn", *excluded);
    if (excluded->empty()) entry.remove("NotShowIn");
  }
  if (showsIn(entry, desktops_)) return;
  auto only = entry.list("OnlyShowIn").value_or(std::vector<std::string>());
  if (desktops_.empty()) {
    entry.remove("OnlyShowIn");  // this desktop has no name to add
  } else {
    only.push_back(desktops_.front());
    entry.set("OnlyShowIn", only);
  }
}

void AutostartEntry::nameProgram(DesktopEntry& entry) const {
  entry.set("Exec", execLine(program_));
  // A desktop passes over an entry whose program was removed.
  entry.set("TryExec", program_.native());
}

DesktopEntry AutostartEntry::newEntry() const {
  DesktopEntry entry;
  entry.set("Type", std::string("Application"));
  entry.set("Name", std::string("Velmora"));
  entry.set("Comment", std::string("Let AI coding agents use your terminal, within limits that you set"));
  entry.set("Icon", std::string("app.velmora.Velmora"));
  entry.set("Terminal", false);
  nameProgram(entry);
  return entry;
}

void AutostartEntry::write(const DesktopEntry& entry) const {
  files_.createDirectories(ownFile_.parent_path());
  StagedFile file(files_, ownFile_, entry.bytes());
  file.commit();
}

}  // namespace velmora
