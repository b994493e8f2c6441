// What running a child process needs from the system beyond POSIX. One .cpp file per platform.
#pragma once

#include <spawn.h>
#include <sys/types.h>

#include "System/FileDescriptor.h"

namespace velmora {

/// Lets the child inherit its three standard streams and nothing else.
void keepOnlyStandardStreams(posix_spawn_file_actions_t& actions, short& flags);

/// Polls readable once the child `process` has ended; holds none when the system has no such descriptor.
FileDescriptor exitDescriptor(pid_t process);

}  // namespace velmora
