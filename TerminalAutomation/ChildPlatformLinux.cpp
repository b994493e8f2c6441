#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "TerminalAutomation/ChildPlatform.h"

namespace velmora {

std::array<int, 2> closeOnExecPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe2");
  return ends;
}

void keepOnlyStandardStreams(posix_spawn_file_actions_t& actions, short&) {
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

int exitDescriptor(pid_t process) {
  // Always close-on-exec.
  return static_cast<int>(syscall(SYS_pidfd_open, process, 0));
}

}  // namespace velmora
