// An autostart entry that users and desktops wrote into: whatever it holds, switching it keeps what is not
// the switch's, and an Exec line names the program that it was made for.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "VelmoraApp/Platform/AutostartEntry.h"
#include "fuzzers/MemoryFileSystem.h"

namespace {

using namespace velmora;

const Environment environment{{"HOME", "/home/user"}};
const std::filesystem::path file = "/home/user/.config/autostart/app.velmora.Velmora.desktop";
constexpr const char* otherGroup = "\n[Desktop Action Other]\nName=A line of the user's\n";

void checkEntry(std::string_view bytes) {
  MemoryFileSystem files;
  AutostartEntry entry(files, environment, "/bin/sh");
  entry.setEnabled(true);
  if (!entry.isEnabled()) std::abort();
  files.remove(file);
  files.create(file, std::string(bytes) + otherGroup);
  entry.followProgram();
  const bool wasEnabled = entry.isEnabled();
  const auto before = files.read(file);
  entry.setEnabled(true);
  if (wasEnabled && files.read(file) != before) std::abort();
  if (wasEnabled && before.find("A line of the user's") == std::string::npos) std::abort();
  const bool isEnabled = entry.isEnabled();
  entry.setEnabled(false);
  if (entry.isEnabled() || isEnabled == files.exists(file)) std::abort();
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
