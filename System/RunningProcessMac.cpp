#include <libproc.h>
#include <mach-o/dyld.h>
#include <stdlib.h>
#include <sys/proc.h>
#include <sys/proc_info.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <system_error>

#include "System/RunningProcess.h"

namespace velmora {

namespace {

std::string programName(pid_t process, const proc_bsdinfo& info) {
  std::array<char, PROC_PIDPATHINFO_MAXSIZE> path{};
  if (proc_pidpath(process, path.data(), path.size()) <= 0) return info.pbi_comm;
  const char* slash = std::strrchr(path.data(), '/');
  return slash == nullptr ? path.data() : slash + 1;
}

std::optional<std::filesystem::path> terminalOf(const proc_bsdinfo& info) {
  const auto device = static_cast<dev_t>(info.e_tdev);
  const char* name = device == NODEV ? nullptr : devname(device, S_IFCHR);
  if (name == nullptr) return std::nullopt;
  return std::filesystem::path("/dev") / name;
}

}  // namespace

std::optional<RunningProcess> runningProcess(pid_t process) {
  proc_bsdinfo info{};
  if (proc_pidinfo(process, PROC_PIDTBSDINFO, 0, &info, sizeof info) != sizeof info) return std::nullopt;
  if (info.pbi_status == SZOMB) return std::nullopt;
  return RunningProcess{.name = programName(process, info),
                        .startedAt = static_cast<double>(info.pbi_start_tvsec),
                        .parent = static_cast<pid_t>(info.pbi_ppid),
                        .terminal = terminalOf(info),
                        .isStopped = info.pbi_status == SSTOP};
}

std::filesystem::path runningProgramFile() {
  std::uint32_t size = 0;
  _NSGetExecutablePath(nullptr, &size);
  std::string path(size, '\0');
  if (_NSGetExecutablePath(path.data(), &size) != 0) return {};
  std::error_code none;
  return std::filesystem::canonical(path.c_str(), none);
}

}  // namespace velmora
