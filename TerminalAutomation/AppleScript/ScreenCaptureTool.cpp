#include "TerminalAutomation/AppleScript/ScreenCaptureTool.h"

#include <algorithm>

#include "TerminalAutomation/PlatformError.h"

namespace velmora {

std::filesystem::path captureScreenBounds(const ScreenBounds& bounds,
                                          const std::filesystem::path& temporaryDirectory, const Uuid& id,
                                          ProgramRunner& programs) {
  const auto folder = temporaryDirectory / "Velmora";
  std::filesystem::create_directories(folder);
  std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
  auto file = folder / ("terminal-" + id.toString() + ".png");

  const auto width = std::max<std::int64_t>(1, bounds.right - bounds.left);
  const auto height = std::max<std::int64_t>(1, bounds.bottom - bounds.top);
  const std::string rectangle = std::to_string(bounds.left) + "," + std::to_string(bounds.top) + "," +
                                std::to_string(width) + "," + std::to_string(height);
  // -x: without the shutter's sound
  const int status = programs.run("/usr/sbin/screencapture", {"-x", "-R", rectangle, file.string()});
  if (status != 0 || !std::filesystem::exists(file)) throw PlatformError("Velmora.ScreenCapture", status);
  return file;
}

}  // namespace velmora
