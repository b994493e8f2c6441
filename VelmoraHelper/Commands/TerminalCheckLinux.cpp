#include <charconv>
#include <string_view>
#include <utility>

#include "System/Utf8.h"
#include "VelmoraHelper/Commands/TerminalCheck.h"

namespace velmora {

namespace {

constexpr const char* name = "tmux";
constexpr std::pair oldestVersion{3, 2};

// Of "tmux 3.3a" or "tmux next-3.6" the numbers. A development version without any is new enough.
std::pair<int, int> versionNumbers(std::string_view text) {
  const auto digit = text.find_first_of("0123456789");
  if (digit == std::string_view::npos) return oldestVersion;
  std::pair<int, int> version;
  const char* const end = text.data() + text.size();
  const auto major = std::from_chars(text.data() + digit, end, version.first);
  if (major.ptr != end && *major.ptr == '.') std::from_chars(major.ptr + 1, end, version.second);
  return version;
}

}  // namespace

Check checkTerminalProgram(const ProgramAsking& askProgram) {
  constexpr const char* install = "Install tmux 3.2 or newer.";
  const auto answer = askProgram({"tmux", "-V"});
  if (answer.end == ProgramAnswer::End::notFound) return Check::failed(name, "not found", install);
  const auto file = answer.path.string();
  if (answer.end == ProgramAnswer::End::killed) {
    return Check::failed(name, file + " does not answer", "Run: " + file + " -V");
  }
  const auto version = plainText(std::string_view(answer.output).substr(0, answer.output.find('\n')));
  if (answer.exitStatus != 0 || !version.starts_with("tmux ")) {
    return Check::failed(name, file + " does not say its version", "Run: " + file + " -V");
  }
  if (versionNumbers(version) < oldestVersion) {
    return Check::failed(name, version + " at " + file + " is too old",
                         std::string(install) + " Then restart its server.");
  }
  return Check::passed(name, version + " at " + file);
}

}  // namespace velmora
