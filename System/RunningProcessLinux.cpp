#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "System/RunningProcess.h"

namespace velmora {

namespace {

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The fields of /proc/N/stat from the state on, see proc(5); the name before them may hold anything.
std::vector<std::string> fieldsFromState(const std::string& stat) {
  const auto nameEnd = stat.rfind(')');
  if (nameEnd == std::string::npos) return {};
  std::istringstream rest(stat.substr(nameEnd + 1));
  return {std::istream_iterator<std::string>(rest), {}};
}

// In seconds since 1970.
std::optional<double> bootTime() {
  std::ifstream stream("/proc/stat");
  for (std::string word; stream >> word;) {
    double seconds = 0;
    if (word == "btime" && stream >> seconds) return seconds;
  }
  return std::nullopt;
}

std::string programName(const std::filesystem::path& directory) {
  constexpr std::string_view replaced = " (deleted)";
  std::error_code none;
  auto name = std::filesystem::read_symlink(directory / "exe", none).filename().string();
  if (name.ends_with(replaced)) name.resize(name.size() - replaced.size());
  return name;
}

}  // namespace

std::optional<RunningProcess> runningProcess(pid_t process) {
  constexpr std::size_t startTime = 19;  // in ticks since the system's start
  const auto directory = std::filesystem::path("/proc") / std::to_string(process);
  const auto fields = fieldsFromState(contentOf(directory / "stat"));
  if (fields.size() <= startTime || fields[0] == "Z" || fields[0] == "X") return std::nullopt;
  RunningProcess found{.name = programName(directory)};
  if (const auto boot = bootTime()) {
    found.startedAt = *boot + std::stod(fields[startTime]) / static_cast<double>(::sysconf(_SC_CLK_TCK));
  }
  return found;
}

}  // namespace velmora
