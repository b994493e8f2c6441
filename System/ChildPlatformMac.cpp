// What only macOS offers for child processes.
#include <fcntl.h>
#include <sys/event.h>
#include <unistd.h>

#include "System/ChildPlatform.h"

namespace velmora {

void keepOnlyStandardStreams(posix_spawn_file_actions_t&, short& flags) {
  // The streams that the file actions put in place stay open.
  flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);
}

FileDescriptor exitDescriptor(pid_t process) {
  FileDescriptor queue(::kqueue());
  if (!queue) return {};
  ::fcntl(queue.get(), F_SETFD, FD_CLOEXEC);
  struct kevent exit {};
  EV_SET(&exit, static_cast<uintptr_t>(process), EVFILT_PROC, EV_ADD, NOTE_EXIT, 0, nullptr);
  if (::kevent(queue.get(), &exit, 1, nullptr, 0, nullptr) != 0) return {};
  return queue;
}

}  // namespace velmora
