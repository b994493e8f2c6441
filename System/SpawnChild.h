// How every child process is started and taken back.
#pragma once

#include <signal.h>
#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

struct SpawnRequest {
  const std::filesystem::path& program;
  const std::vector<std::string>& arguments;    ///< Without the program's own name.
  const std::vector<std::string>& environment;  ///< "NAME=value"
  int input = -1;                               ///< The child's standard input; -1: /dev/null.
  int output = -1;
  int error = -1;
  bool ownSession = false;  ///< Detached from the terminal that the caller runs in.
};

/// Starts the program with these three streams and no other descriptor, no signal blocked or ignored, and in
/// a process group of its own. Returns 0 or an errno. Thread-safe.
int spawnChild(const SpawnRequest& request, pid_t& process);

/// Waits for a child that has ended or was killed. Returns its exit status as a shell reports it: 128 + the
/// number of a fatal signal.
int reapChild(pid_t process);

/// Keeps the SIGPIPE of a write to a closed pipe from the program: it stays pending and is taken here. For
/// one thread.
class SigpipeBlock {
 public:
  SigpipeBlock();
  ~SigpipeBlock();
  SigpipeBlock(const SigpipeBlock&) = delete;
  SigpipeBlock& operator=(const SigpipeBlock&) = delete;

 private:
  sigset_t sigpipe_{};
  sigset_t before_{};
  const bool wasPending_;
};

}  // namespace velmora
