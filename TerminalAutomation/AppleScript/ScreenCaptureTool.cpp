#include "TerminalAutomation/AppleScript/ScreenCaptureTool.h"

#include <algorithm>
#include <system_error>

#include "TerminalAutomation/PictureFile.h"
#include "TerminalAutomation/PlatformError.h"

namespace velmora {

SystemProgramRunner::SystemProgramRunner(const Environment& environment)
    : environment_(environmentList(environment)) {}

int SystemProgramRunner::run(const std::string& program, const std::vector<std::string>& arguments,
                             std::chrono::steady_clock::time_point deadline) {
  constexpr std::size_t outputLimit = std::size_t{1} << 20;
  const auto result = children_.run({.program = program,
                                     .arguments = arguments,
                                     .environment = environment_,
                                     .deadline = deadline,
                                     .outputLimit = outputLimit});
  if (result.end == ChildResult::End::notStarted) {
    throw std::system_error(result.startError, std::generic_category(), program);
  }
  return result.exitStatus;
}

std::filesystem::path captureScreenBounds(const ScreenBounds& bounds,
                                          const std::filesystem::path& temporaryDirectory, const Uuid& id,
                                          ProgramRunner& programs,
                                          std::chrono::steady_clock::time_point deadline) {
  auto file = pictureFileForProgram(temporaryDirectory, id);
  const auto width = std::max<std::int64_t>(1, bounds.right - bounds.left);
  const auto height = std::max<std::int64_t>(1, bounds.bottom - bounds.top);
  const std::string rectangle = std::to_string(bounds.left) + "," + std::to_string(bounds.top) + "," +
                                std::to_string(width) + "," + std::to_string(height);
  // -x: without the shutter's sound
  const int status =
      programs.run("/usr/sbin/screencapture", {"-x", "-R", rectangle, file.string()}, deadline);
  if (status != 0 || !std::filesystem::exists(file)) throw PlatformError("Velmora.ScreenCapture", status);
  return file;
}

}  // namespace velmora
