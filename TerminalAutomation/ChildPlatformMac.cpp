#include <fcntl.h>
#include <sys/event.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "TerminalAutomation/ChildPlatform.h"

namespace velmora {

std::array<int, 2> closeOnExecPipe() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
  return ends;
}

void keepOnlyStandardStreams(posix_spawn_file_actions_t&, short& flags) {
  // The streams that the file actions put in place stay open.
  flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);
}

int exitDescriptor(pid_t process) {
  const int queue = kqueue();
  if (queue < 0) return -1;
  fcntl(queue, F_SETFD, FD_CLOEXEC);
  struct kevent exit {};
  EV_SET(&exit, static_cast<uintptr_t>(process), EVFILT_PROC, EV_ADD, NOTE_EXIT, 0, nullptr);
  if (kevent(queue, &exit, 1, nullptr, 0, nullptr) == 0) return queue;
  close(queue);
  return -1;
}

}  // namespace velmora
