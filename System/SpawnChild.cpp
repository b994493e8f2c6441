#include "System/SpawnChild.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "System/ChildPlatform.h"

namespace velmora {

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

bool isSigpipePending() {
  sigset_t set;
  sigemptyset(&set);
  sigpending(&set);
  return sigismember(&set, SIGPIPE) == 1;
}

}  // namespace

SigpipeBlock::SigpipeBlock() : wasPending_(isSigpipePending()) {
  sigemptyset(&sigpipe_);
  sigaddset(&sigpipe_, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &sigpipe_, &before_);
}

SigpipeBlock::~SigpipeBlock() {
  if (!wasPending_ && isSigpipePending()) {
    int taken = 0;
    sigwait(&sigpipe_, &taken);
  }
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

int spawnChild(const SpawnRequest& request, pid_t& process) {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  if (request.input >= 0) {
    posix_spawn_file_actions_adddup2(&actions, request.input, STDIN_FILENO);
  } else {
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  posix_spawn_file_actions_adddup2(&actions, request.output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, request.error, STDERR_FILENO);

  // The child starts with no signal blocked or ignored, and a ^C meant for the caller is not its business.
  sigset_t none;
  sigset_t all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
  flags = static_cast<short>(flags | (request.ownSession ? POSIX_SPAWN_SETSID : POSIX_SPAWN_SETPGROUP));
  keepOnlyStandardStreams(actions, flags);
  posix_spawnattr_setflags(&attributes, flags);

  std::vector<std::string> arguments{request.program.string()};
  arguments.insert(arguments.end(), request.arguments.begin(), request.arguments.end());
  std::vector<std::string> environment = request.environment;
  const int result = posix_spawn(&process, request.program.c_str(), &actions, &attributes,
                                 pointers(arguments).data(), pointers(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  return result;
}

int reapChild(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace velmora
