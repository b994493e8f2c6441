#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <string_view>

#include "System/FileDescriptor.h"
#include "TerminalAutomation/Tmux/ProcessTable.h"

namespace velmora {

namespace {

std::string readProcFile(pid_t process, const char* name) {
  std::string content;
  const std::string path = "/proc/" + std::to_string(process) + "/" + name;
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return content;
  std::array<char, 4096> block;
  ssize_t count = 0;
  // An argument list can be long; its beginning says enough. procfs fills the block unless the file ends.
  do {
    count = ::read(file.get(), block.data(), block.size());
    if (count > 0) content.append(block.data(), static_cast<std::size_t>(count));
  } while (count == static_cast<ssize_t>(block.size()) && content.size() < 65536);
  return content;
}

/// "pid (name) state ppid pgrp session tty_nr tpgid ...": the name may hold anything, also ')'. Empty when it
/// cannot be read.
struct ProcessLine {
  explicit ProcessLine(pid_t process) : stat(readProcFile(process, "stat")) {
    const std::size_t open = stat.find('(');
    const std::size_t close = stat.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open || close + 2 >= stat.size())
      return;
    name = std::string_view(stat).substr(open + 1, close - open - 1);
    rest = std::string_view(stat).substr(close + 2);
  }
  ProcessLine(const ProcessLine&) = delete;
  ProcessLine& operator=(const ProcessLine&) = delete;

  bool hasEnded() const { return rest.starts_with('Z') || rest.starts_with('X'); }

  const std::string stat;
  std::string_view name;
  std::string_view rest;  ///< From the state on.
};

class ProcFs final : public ProcessTable {
 public:
  std::optional<ProcessState> state(pid_t process) const override {
    const ProcessLine line(process);
    if (line.rest.empty() || line.hasEnded()) return std::nullopt;
    ProcessState result;
    result.name = line.name;
    std::string_view rest = line.rest;
    result.running = rest.front() == 'R';
    rest.remove_prefix(1);
    // From ppid to starttime, see proc(5); flags and sizes fit.
    std::array<long long, 19> numbers{};
    for (long long& number : numbers) {
      while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
      const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
      if (error != std::errc()) return std::nullopt;
      rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    }
    result.parent = static_cast<pid_t>(numbers[0]);
    result.group = static_cast<pid_t>(numbers[1]);
    result.foregroundGroup = static_cast<pid_t>(numbers[4]);
    result.startTicks = numbers[18];
    return result;
  }

  bool hasEnded(pid_t process) const override {
    return isNoProcess(process) || ProcessLine(process).hasEnded();
  }

  std::vector<std::string> arguments(pid_t process) const override {
    const std::string content = readProcFile(process, "cmdline");
    std::vector<std::string> result;
    for (std::size_t start = 0; start < content.size();) {
      const std::size_t end = std::min(content.find('\0', start), content.size());
      result.push_back(content.substr(start, end - start));
      start = end + 1;
    }
    return result;
  }

  std::optional<TerminalMode> terminalMode(const std::string& tty) const override {
    return systemTerminalMode(tty);
  }

  std::size_t longestCollectedLine() const override {
    return 4095;
  }  // N_TTY_BUF_SIZE in the kernel, less one
};

}  // namespace

std::unique_ptr<ProcessTable> systemProcessTable() { return std::make_unique<ProcFs>(); }

}  // namespace velmora
