// What only Linux offers for child processes.
#include <sys/syscall.h>
#include <unistd.h>

#include "System/ChildPlatform.h"

namespace velmora {

void keepOnlyStandardStreams(posix_spawn_file_actions_t& actions, short&) {
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

FileDescriptor exitDescriptor(pid_t process) {
  // Always close-on-exec.
  return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
}

}  // namespace velmora
