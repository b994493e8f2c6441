#include "System/ChildProcess.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "System/ChildPlatform.h"
#include "System/SpawnChild.h"

namespace velmora {

namespace {

using End = ChildResult::End;

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
  result.startError = spawnChild({.program = request.program,
                                  .arguments = request.arguments,
                                  .environment = request.environment,
                                  .input = input.read.get(),
                                  .output = output.write.get(),
                                  .error = error.write.get(),
                                  .ownSession = request.ownSession},
                                 process);
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
  result.exitStatus = reapChild(process);
  return result;
}

}  // namespace velmora
