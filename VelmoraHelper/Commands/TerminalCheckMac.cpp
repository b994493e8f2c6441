// The check of TerminalCheck.h on macOS: Terminal.app is a part of the system.
#include <filesystem>
#include <system_error>

#include "VelmoraHelper/Commands/TerminalCheck.h"

namespace velmora {

Check checkTerminalProgram(const ProgramAsking&) {
  constexpr const char* place = "/System/Applications/Utilities/Terminal.app";
  std::error_code error;
  if (std::filesystem::is_directory(place, error)) return Check::passed("Terminal.app", place);
  return Check::failed("Terminal.app", std::string(place) + " is missing", "Repair macOS.");
}

}  // namespace velmora
