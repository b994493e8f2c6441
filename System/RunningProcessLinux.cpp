#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "System/RunningProcess.h"

namespace velmora {

namespace {

// Empty where it cannot be read; a process may end between the opening and the reading, which iterators would
// throw for.
std::string contentOf(const std::filesystem::path& file) {
  std::ostringstream content;
  content << std::ifstream(file).rdbuf();
  return std::move(content).str();
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

// What the kernel puts behind the name of a file that is no longer there, see proc(5).
constexpr std::string_view replaced = " (deleted)";

// A program that runs with more rights than its user's does not tell its file; the short name is known of
// all.
std::string programName(std::string name, const std::string& stat) {
  if (name.ends_with(replaced)) name.resize(name.size() - replaced.size());
  const auto begin = stat.find('(') + 1;
  return name.empty() ? stat.substr(begin, stat.rfind(')') - begin) : name;
}

// A device's number as stat has it, see proc(5); its name by the kernel's list of devices (major 4 and 136 to
// 143). Nothing for no terminal and for other devices.
std::optional<std::filesystem::path> terminalOf(unsigned device) {
  constexpr unsigned serialLines = 64;
  const unsigned major = device >> 8 & 0xFFF;
  const unsigned minor = (device & 0xFF) | (device >> 12 & 0xFFF00);
  if (major >= 136 && major <= 143) return "/dev/pts/" + std::to_string((major - 136) * 256 + minor);
  if (major != 4) return std::nullopt;
  return minor < serialLines ? "/dev/tty" + std::to_string(minor)
                             : "/dev/ttyS" + std::to_string(minor - serialLines);
}

}  // namespace

std::optional<RunningProcess> runningProcess(pid_t process) {
  constexpr std::size_t parent = 1;
  constexpr std::size_t terminal = 4;
  constexpr std::size_t startTime = 19;  // in ticks since the system's start
  const auto directory = std::filesystem::path("/proc") / std::to_string(process);
  const auto stat = contentOf(directory / "stat");
  const auto fields = fieldsFromState(stat);
  if (fields.size() <= startTime || fields[0] == "Z" || fields[0] == "X") return std::nullopt;
  std::error_code none;
  const auto file = std::filesystem::read_symlink(directory / "exe", none).filename().string();
  RunningProcess found{.name = programName(file, stat),
                       .startTicks = std::stoll(fields[startTime]),
                       .parent = static_cast<pid_t>(std::stol(fields[parent])),
                       .terminal = terminalOf(static_cast<unsigned>(std::stol(fields[terminal]))),
                       .isStopped = fields[0] == "T",
                       .isReplaced = file.ends_with(replaced)};
  if (const auto boot = bootTime()) {
    found.startedAt = *boot + std::stod(fields[startTime]) / static_cast<double>(::sysconf(_SC_CLK_TCK));
  }
  return found;
}

std::filesystem::path runningProgramFile() {
  std::error_code none;
  return std::filesystem::read_symlink("/proc/self/exe", none);
}

}  // namespace velmora
