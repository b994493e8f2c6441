#include "VelmoraApp/LaunchAtLogin/DesktopEntry.h"

#include <algorithm>
#include <stdexcept>

namespace velmora {

namespace {

constexpr const char* group = "Desktop Entry";

struct Free {
  void operator()(char* text) const { g_free(text); }
  void operator()(char** texts) const { g_strfreev(texts); }
};
using Text = std::unique_ptr<char, Free>;
using Texts = std::unique_ptr<char*, Free>;

struct Failure {
  ~Failure() { g_clear_error(&error); }
  GError* error = nullptr;
};

}  // namespace

DesktopEntry::DesktopEntry() : file_(g_key_file_new()) {}

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view bytes) {
  DesktopEntry entry;
  constexpr auto keepAll =
      static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
  if (g_key_file_load_from_data(entry.file_.get(), bytes.data(), bytes.size(), keepAll, nullptr) == 0) {
    return std::nullopt;
  }
  if (g_key_file_has_group(entry.file_.get(), group) == 0) return std::nullopt;
  return entry;
}

std::string DesktopEntry::bytes() const {
  gsize length = 0;
  const Text data(g_key_file_to_data(file_.get(), &length, nullptr));
  return {data.get(), length};
}

std::optional<std::string> DesktopEntry::text(const char* key) const {
  const Text value(g_key_file_get_string(file_.get(), group, key, nullptr));
  if (value == nullptr) return std::nullopt;
  return value.get();
}

std::optional<bool> DesktopEntry::boolean(const char* key) const {
  Failure failure;
  const bool value = g_key_file_get_boolean(file_.get(), group, key, &failure.error) != 0;
  if (failure.error != nullptr) return std::nullopt;
  return value;
}

std::optional<std::vector<std::string>> DesktopEntry::list(const char* key) const {
  gsize length = 0;
  const Texts values(g_key_file_get_string_list(file_.get(), group, key, &length, nullptr));
  if (values == nullptr) return std::nullopt;
  return std::vector<std::string>(values.get(), values.get() + length);
}

void DesktopEntry::set(const char* key, const std::string& text) {
  g_key_file_set_string(file_.get(), group, key, text.c_str());
}

void DesktopEntry::set(const char* key, bool value) {
  g_key_file_set_boolean(file_.get(), group, key, value ? TRUE : FALSE);
}

void DesktopEntry::set(const char* key, const std::vector<std::string>& list) {
  std::vector<const char*> texts;
  texts.reserve(list.size());
  for (const auto& text : list) texts.push_back(text.c_str());
  g_key_file_set_string_list(file_.get(), group, key, texts.data(), texts.size());
}

void DesktopEntry::remove(const char* key) { g_key_file_remove_key(file_.get(), group, key, nullptr); }

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
    if (character == '%') line += character;  // else it begins a field code
  }
  return needsQuotes ? '"' + line + '"' : line;
}

std::optional<std::filesystem::path> programAlone(const std::string& execLine) {
  int count = 0;
  char** words = nullptr;
  if (g_shell_parse_argv(execLine.c_str(), &count, &words, nullptr) == 0) return std::nullopt;
  const Texts owner(words);
  if (count != 1) return std::nullopt;
  std::string program;
  for (const char* character = words[0]; *character != '\0'; ++character) {
    if (*character == '%' && *++character != '%') return std::nullopt;  // a field code
    program += *character;
  }
  return program;
}

}  // namespace velmora
