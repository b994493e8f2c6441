// The group [Desktop Entry] of a desktop file.
#pragma once

#include <glib.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// For one thread. What a person or a desktop wrote (comments, other keys, other groups) stays as it is.
class DesktopEntry {
 public:
  /// Without any key.
  DesktopEntry();

  /// Nothing when the bytes are no desktop file, or have no such group.
  static std::optional<DesktopEntry> parse(std::string_view bytes);
  std::string bytes() const;

  // A key that is missing or has no value of that kind reads as absent.
  std::optional<std::string> text(const char* key) const;
  std::optional<bool> boolean(const char* key) const;
  std::optional<std::vector<std::string>> list(const char* key) const;

  // The text must be UTF-8.
  void set(const char* key, const std::string& text);
  void set(const char* key, bool value);
  void set(const char* key, const std::vector<std::string>& list);
  void remove(const char* key);

 private:
  struct Unref {
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
  };

  std::unique_ptr<GKeyFile, Unref> file_;
};

/// `program` without arguments, as the key Exec wants it: quoted, so that no character of its path means
/// anything. Throws std::invalid_argument when a desktop file cannot hold the path.
std::string execLine(const std::filesystem::path& program);

/// The program of an Exec line that consists of nothing else; nothing for any other line.
std::optional<std::filesystem::path> programAlone(const std::string& execLine);

}  // namespace velmora
