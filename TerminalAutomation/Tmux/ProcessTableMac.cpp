#include <libproc.h>
#include <sys/proc.h>
#include <sys/proc_info.h>
#include <sys/sysctl.h>

#include <array>
#include <cstring>

#include "TerminalAutomation/Tmux/ProcessTable.h"

namespace velmora {

namespace {

class LibProc final : public ProcessTable {
 public:
  std::optional<ProcessState> state(pid_t process) const override {
    proc_bsdinfo info{};
    if (proc_pidinfo(process, PROC_PIDTBSDINFO, 0, &info, sizeof info) != sizeof info) return std::nullopt;
    if (info.pbi_status == SZOMB) return std::nullopt;
    ProcessState result{.name = {},
                        .parent = static_cast<pid_t>(info.pbi_ppid),
                        .group = static_cast<pid_t>(info.pbi_pgid),
                        .foregroundGroup = static_cast<pid_t>(info.e_tpgid),
                        .running = threadRuns(process)};
    std::array<char, PROC_PIDPATHINFO_MAXSIZE> path{};
    if (proc_pidpath(process, path.data(), path.size()) > 0) {
      const char* slash = std::strrchr(path.data(), '/');
      result.name = slash == nullptr ? path.data() : slash + 1;
    } else {
      result.name = info.pbi_comm;
    }
    return result;
  }

  bool hasEnded(pid_t process) const override {
    proc_bsdinfo info{};
    return isNoProcess(process) ||
           (proc_pidinfo(process, PROC_PIDTBSDINFO, 0, &info, sizeof info) == sizeof info &&
            info.pbi_status == SZOMB);
  }

  std::vector<std::string> arguments(pid_t process) const override {
    // The count, the executable's path, padding, then the arguments, each with a NUL at its end.
    std::array<int, 3> name{CTL_KERN, KERN_PROCARGS2, process};
    std::size_t size = 0;
    if (sysctl(name.data(), name.size(), nullptr, &size, nullptr, 0) != 0) return {};
    std::string content(size, '\0');
    if (sysctl(name.data(), name.size(), content.data(), &size, nullptr, 0) != 0 || size < sizeof(int))
      return {};
    content.resize(size);
    int count = 0;
    std::memcpy(&count, content.data(), sizeof count);
    std::size_t position = content.find('\0', sizeof count);
    if (position == std::string::npos) return {};
    position = content.find_first_not_of('\0', position);
    std::vector<std::string> result;
    while (position < content.size() && count-- > 0) {
      const std::size_t end = std::min(content.find('\0', position), content.size());
      result.push_back(content.substr(position, end - position));
      position = end + 1;
    }
    return result;
  }

  std::optional<TerminalMode> terminalMode(const std::string& tty) const override {
    return systemTerminalMode(tty);
  }

  std::size_t longestCollectedLine() const override {
    return 1023;
  }  // MAX_CANON in sys/syslimits.h, less one

 private:
  static bool threadRuns(pid_t process) {
    proc_taskinfo task{};
    return proc_pidinfo(process, PROC_PIDTASKINFO, 0, &task, sizeof task) == sizeof task &&
           task.pti_numrunning > 0;
  }
};

}  // namespace

std::unique_ptr<ProcessTable> systemProcessTable() { return std::make_unique<LibProc>(); }

}  // namespace velmora
