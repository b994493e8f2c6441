#include "VelmoraApp/Platform/AutostartEntry.h"

#include <gio/gdesktopappinfo.h>

#include <stdexcept>

#include "System/StagedFile.h"

namespace velmora {

namespace {

constexpr const char* group = G_KEY_FILE_DESKTOP_GROUP;

// Written by desktops in whose settings the user switched the entry off.
constexpr const char* desktopSwitch = "X-GNOME-Autostart-enabled";

struct Free {
  void operator()(char* text) const { g_free(text); }
  void operator()(char** texts) const { g_strfreev(texts); }
  void operator()(GDesktopAppInfo* info) const { g_object_unref(info); }
};

std::string text(GKeyFile* entry, const char* key) {
  const std::unique_ptr<char, Free> value(g_key_file_get_string(entry, group, key, nullptr));
  return value ? value.get() : std::string();
}

void set(GKeyFile* entry, const char* key, const std::string& text) {
  g_key_file_set_string(entry, group, key, text.c_str());
}

void remove(GKeyFile* entry, const char* key) { g_key_file_remove_key(entry, group, key, nullptr); }

bool isSwitchedOff(GKeyFile* entry) { return text(entry, desktopSwitch) == "false"; }

// GLib reads it like the desktops: without a program there is no such application.
bool wouldStart(GKeyFile* entry) {
  const std::unique_ptr<GDesktopAppInfo, Free> info(g_desktop_app_info_new_from_keyfile(entry));
  return info && !text(entry, "Exec").empty() && !isSwitchedOff(entry) &&
         g_desktop_app_info_get_is_hidden(info.get()) == 0 &&
         g_desktop_app_info_get_show_in(info.get(), nullptr) != 0;
}

std::filesystem::path fileFor(const Environment& environment) {
  const auto directory = baseDirectory(environment, "XDG_CONFIG_HOME", ".config");
  return directory.empty() ? directory : directory / "autostart" / "app.velmora.Velmora.desktop";
}

}  // namespace

AutostartEntry::AutostartEntry(FileSystem& files, const Environment& environment,
                               std::filesystem::path program)
    : files_(files), program_(std::move(program)), file_(fileFor(environment)) {}

bool AutostartEntry::isEnabled() const {
  const auto entry = read();
  return entry && wouldStart(entry.get());
}

void AutostartEntry::setEnabled(bool enabled) {
  if (file_.empty()) throw std::runtime_error("neither XDG_CONFIG_HOME nor HOME names a directory");
  if (enabled == isEnabled()) return;
  if (!enabled) {
    files_.remove(file_);
    files_.flushDirectory(file_.parent_path());
    return;
  }
  auto entry = read();
  if (!entry) entry = newEntry();
  remove(entry.get(), "Hidden");
  set(entry.get(), desktopSwitch, "true");
  if (text(entry.get(), "Exec").empty() || namesOnlyProgram(entry.get())) nameProgram(entry.get());
  if (!wouldStart(entry.get())) {
    set(entry.get(), "Type", "Application");
    for (const auto* limit : {"OnlyShowIn", "NotShowIn", "TryExec"}) remove(entry.get(), limit);
  }
  write(entry.get());
}

void AutostartEntry::followProgram() {
  const auto entry = read();
  if (!entry || !namesOnlyProgram(entry.get()) || text(entry.get(), "Exec") == execLine(program_)) return;
  nameProgram(entry.get());
  write(entry.get());
}

// Nothing when there is no entry, or none that a desktop can read.
AutostartEntry::Entry AutostartEntry::read() const {
  if (file_.empty()) return nullptr;
  std::string bytes;
  try {
    if (!files_.exists(file_)) return nullptr;
    bytes = files_.read(file_);
  } catch (const std::system_error&) {
    return nullptr;
  }
  Entry entry(g_key_file_new());
  constexpr auto keepAll =
      static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
  const bool isRead =
      g_key_file_load_from_data(entry.get(), bytes.data(), bytes.size(), keepAll, nullptr) != 0;
  return isRead && g_key_file_has_group(entry.get(), group) != 0 ? std::move(entry) : nullptr;
}

AutostartEntry::Entry AutostartEntry::newEntry() const {
  Entry entry(g_key_file_new());
  set(entry.get(), "Type", "Application");
  set(entry.get(), "Name", "Velmora");
  set(entry.get(), "Comment", "Let AI coding agents use your terminal, within limits that you set");
  set(entry.get(), "Icon", "app.velmora.Velmora");
  set(entry.get(), "Terminal", "false");
  return entry;
}

void AutostartEntry::write(GKeyFile* entry) const {
  gsize length = 0;
  const std::unique_ptr<char, Free> bytes(g_key_file_to_data(entry, &length, nullptr));
  files_.createDirectories(file_.parent_path());
  StagedFile file(files_, file_, {bytes.get(), length});
  file.commit();
}

void AutostartEntry::nameProgram(GKeyFile* entry) const {
  set(entry, "Exec", execLine(program_));
  set(entry, "TryExec", program_.native());  // a desktop passes over an entry whose program was removed
}

// Here or at another place. A line that does more is the user's own.
bool AutostartEntry::namesOnlyProgram(GKeyFile* entry) const {
  const auto named = programAlone(text(entry, "Exec"));
  return named && named->is_absolute() && named->filename() == program_.filename();
}

std::string execLine(const std::filesystem::path& program) {
  const auto& path = program.native();
  if (g_utf8_validate(path.data(), static_cast<gssize>(path.size()), nullptr) == 0) {
    throw std::invalid_argument("the program's path is not UTF-8");
  }
  // The characters that Exec reserves; only the four below mean something inside the quotes.
  const bool needsQuotes = path.find_first_of(" \t\n\"'\\><~|&;$*?#()`") != std::string::npos;
  std::string line;
  for (const char character : path) {
    if (std::string_view("\"`$\\").find(character) != std::string_view::npos) line += '\\';
    line += character;
    if (character == '%') line += character;  // otherwise it begins a field code
  }
  return needsQuotes ? '"' + line + '"' : line;
}

std::optional<std::filesystem::path> programAlone(const std::string& execLine) {
  int count = 0;
  char** words = nullptr;
  if (g_shell_parse_argv(execLine.c_str(), &count, &words, nullptr) == 0) return std::nullopt;
  const std::unique_ptr<char*, Free> owner(words);
  if (count != 1) return std::nullopt;
  std::string program;
  for (const char* character = words[0]; *character != '\0'; ++character) {
    if (*character == '%' && *++character != '%') return std::nullopt;  // a field code
    program += *character;
  }
  return program;
}

}  // namespace velmora
