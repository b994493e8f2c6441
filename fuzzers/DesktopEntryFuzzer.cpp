// A desktop file that users and desktops wrote into: what it holds survives a change of one key, and an Exec
// line names the program that it was made for.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "VelmoraApp/LaunchAtLogin/DesktopEntry.h"

namespace {

using namespace velmora;

void checkEntry(std::string_view bytes) {
  auto entry = DesktopEntry::parse(bytes);
  if (!entry) return;
  for (const auto* key : {"Exec", "Name", "Type", "Comment"}) static_cast<void>(entry->text(key));
  for (const auto* key : {"OnlyShowIn", "NotShowIn"}) static_cast<void>(entry->list(key));
  if (const auto exec = entry->text("Exec")) static_cast<void>(programAlone(*exec));
  const auto type = entry->text("Type");
  const auto desktops = entry->list("OnlyShowIn");
  entry->set("Hidden", true);
  entry->set("X-Velmora-Test", std::string("a; \\ b"));
  const auto again = DesktopEntry::parse(entry->bytes());
  if (!again || again->boolean("Hidden") != true || again->text("X-Velmora-Test") != "a; \\ b") std::abort();
  // GLib ends a value at a NUL, and then keeps the white space before it until the value is written.
  if (bytes.find('\0') != std::string_view::npos) return;
  if (again->text("Type") != type || again->list("OnlyShowIn") != desktops) std::abort();
}

// The path of a program has no NUL.
void checkProgram(std::string_view bytes) {
  const std::string path(bytes.substr(0, bytes.find('\0')));
  if (path.empty()) return;
  static_cast<void>(programAlone(path));
  try {
    if (programAlone(execLine(path)) != path) std::abort();
  } catch (const std::invalid_argument&) {
    // No desktop file can hold it.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  checkEntry(bytes);
  checkProgram(bytes);
  // The same bytes as the keys of an entry, so that mutations reach what stands behind the group's name.
  checkEntry("[Desktop Entry]\n" + std::string(bytes));
  return 0;
}
