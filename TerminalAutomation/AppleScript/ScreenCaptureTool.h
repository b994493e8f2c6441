// Pictures of the screen through the system's own tool.
#pragma once

#include <cstdint>
#include <filesystem>

#include "BridgeModels/Uuid.h"
#include "TerminalAutomation/AppleScript/ProgramRunner.h"

namespace velmora {

/// A part of the screen in points; the origin is the main display's upper left corner.
struct ScreenBounds {
  std::int64_t left = 0;
  std::int64_t top = 0;
  std::int64_t right = 0;
  std::int64_t bottom = 0;
};

/// Writes what stands within `bounds` (at least one point wide and high) to "Velmora/terminal-<id>.png" in
/// `temporaryDirectory` and returns the file's path. Throws PlatformError with the tool's exit status when it
/// failed or wrote no file, std::system_error when it cannot be started or the folder cannot be made.
std::filesystem::path captureScreenBounds(const ScreenBounds& bounds,
                                          const std::filesystem::path& temporaryDirectory, const Uuid& id,
                                          ProgramRunner& programs);

}  // namespace velmora
