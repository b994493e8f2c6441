#include "System/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "System/ChildPlatform.h"

namespace velmora {

namespace {

using End = ChildResult::End;

/// Keeps the SIGPIPE of a write to a closed pipe from the program: it stays pending and is taken here.
class SigpipeBlock {
 public:
  SigpipeBlock() {
    sigemptyset(&sigpipe_);
    sigaddset(&sigpipe_, SIGPIPE);
    wasPending_ = pending();
    pthread_sigmask(SIG_BLOCK, &sigpipe_, &before_);
  }
  ~SigpipeBlock() {
    if (!wasPending_ && pending()) {
      int taken = 0;
      sigwait(&sigpipe_, &taken);
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  SigpipeBlock(const SigpipeBlock&) = delete;
  SigpipeBlock& operator=(const SigpipeBlock&) = delete;

 private:
  static bool pending() {
    sigset_t set;
    sigemptyset(&set);
    sigpending(&set);
    return sigismember(&set, SIGPIPE) == 1;
  }

  sigset_t sigpipe_;
  sigset_t before_;
  bool wasPending_ = false;
};

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

/// Starts the program with the given streams (-1: /dev/null); returns 0 or an errno.
int spawn(const ChildRequest& request, int input, int output, int error, pid_t& process) {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  if (input >= 0) {
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  } else {
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, error, STDERR_FILENO);

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

/// Reads what is there. Closes the descriptor at the end of the stream. False past the limit.
bool drain(FileDescriptor& from, std::string& into, std::size_t limit) {
  std::array<char, 65536> block;
  while (from) {
    const ssize_t count = read(from.get(), block.data(), block.size());
    if (count > 0) {
      if (into.size() + static_cast<std::size_t>(count) > limit) return false;
      into.append(block.data(), static_cast<std::size_t>(count));
    } else if (count == 0) {
      from.close();
    } else if (errno != EINTR) {
      if (errno != EAGAIN) from.close();
      break;
    }
  }
  return true;
}

/// Writes what the pipe takes; closes it when everything is written or nobody reads.
void feed(FileDescriptor& to, std::string_view& rest) {
  if (!to) return;
  rest = writeTo(to, rest);
  if (rest.empty() || errno != EAGAIN) to.close();
}

/// Waits for the child, which has ended or was killed.
int reap(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool hasEnded(pid_t process) {
  siginfo_t info{};
  return waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         info.si_pid == process;
}

}  // namespace

void ChildProcessRunner::cancel() noexcept {
  // The byte is never read, so every run sees it.
  if (!cancelled_.exchange(true)) [[maybe_unused]]
    const ssize_t written = write(cancelPipe_.write.get(), "x", 1);
}

ChildResult ChildProcessRunner::run(const ChildRequest& request) {
  const SigpipeBlock sigpipeBlock;
  ChildResult result;
  Pipe output = openPipe();
  Pipe error = openPipe();
  Pipe input;
  if (request.standardInput) input = openPipe();

  pid_t process = -1;
  result.startError = spawn(request, input.read.get(), output.write.get(), error.write.get(), process);
  if (result.startError != 0) return result;
  input.read.close();
  output.write.close();
  error.write.close();
  setNonBlocking(output.read);
  setNonBlocking(error.read);
  std::string_view rest;
  if (input.write) {
    setNonBlocking(input.write);
    rest = *request.standardInput;
    feed(input.write, rest);
  }
  const FileDescriptor exit = exitDescriptor(process);

  while (true) {
    std::array<pollfd, 5> polled{{{exit.get(), POLLIN, 0},
                                  {cancelPipe_.read.get(), POLLIN, 0},
                                  {output.read.get(), POLLIN, 0},
                                  {error.read.get(), POLLIN, 0},
                                  {input.write.get(), POLLOUT, 0}}};
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(request.deadline - std::chrono::steady_clock::now());
    // Without a descriptor for its end the child is looked at every few milliseconds.
    const std::int64_t longest = exit ? 60'000 : 5;
    poll(polled.data(), polled.size(), static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, longest)));

    const bool ended = exit ? polled[0].revents != 0 : hasEnded(process);
    if (polled[4].revents != 0) feed(input.write, rest);
    const bool withinLimit = drain(output.read, result.output, request.outputLimit) &&
                             drain(error.read, result.errorOutput, request.outputLimit);
    if (!withinLimit) {
      result.end = End::outputTooLarge;
    } else if (ended) {
      result.end = End::exited;
    } else if (polled[1].revents != 0) {
      result.end = End::cancelled;
    } else if (std::chrono::steady_clock::now() >= request.deadline) {
      result.end = End::timedOut;
    } else {
      continue;
    }
    break;
  }
  if (result.end != End::exited) kill(process, SIGKILL);
  result.exitStatus = reap(process);
  return result;
}

}  // namespace velmora
