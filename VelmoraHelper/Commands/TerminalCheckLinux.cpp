#include <string_view>
#include <utility>

#include "System/ProgramVersion.h"
#include "System/Utf8.h"
#include "VelmoraHelper/Commands/TerminalCheck.h"

namespace velmora {

namespace {

constexpr const char* tmuxCheck = "tmux";
constexpr std::pair oldestVersion{3, 2};

}  // namespace

Check checkTerminalProgram(const ProgramAsking& askProgram) {
  constexpr const char* install = "Install tmux 3.2 or newer.";
  const auto answer = askProgram({"tmux", "-V"});
  if (answer.end == ProgramAnswer::End::notFound) return Check::failed(tmuxCheck, "not found", install);
  const auto file = answer.path.string();
  if (answer.end == ProgramAnswer::End::killed) {
    return Check::failed(tmuxCheck, file + " does not answer", "Run: " + file + " -V");
  }
  const auto version = plainText(std::string_view(answer.output).substr(0, answer.output.find('\n')));
  if (answer.exitStatus != 0 || !version.starts_with("tmux ")) {
    return Check::failed(tmuxCheck, file + " does not say its version", "Run: " + file + " -V");
  }
  // A development version may have no numbers; it is new enough.
  if (versionNumbers(version).value_or(oldestVersion) < oldestVersion) {
    return Check::failed(tmuxCheck, version + " at " + file + " is too old",
                         std::string(install) + " Then restart its server.");
  }
  return Check::passed(tmuxCheck, version + " at " + file);
}

}  // namespace velmora
