// What running a child process needs from the system beyond POSIX. One .cpp file per platform.
#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <array>

namespace velmora {

/// A pipe, both ends close-on-exec: {read, write}. Throws std::system_error.
std::array<int, 2> closeOnExecPipe();

/// Lets the child inherit its three standard streams and nothing else.
void keepOnlyStandardStreams(posix_spawn_file_actions_t& actions, short& flags);

/// A descriptor that polls readable once the child `process` has ended, or -1 when the system has none.
/// The caller closes it.
int exitDescriptor(pid_t process);

}  // namespace velmora
