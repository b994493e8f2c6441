// The bridge without a window. It takes no arguments but --help and --version, prints one line (the socket's
// path) when it is ready, and serves until SIGINT, SIGTERM or SIGHUP; SIGUSR1 pauses it. What it has to say
// of itself goes to stderr.

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string_view>
#include <vector>

#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeHost/BridgeHost.h"
#include "BridgeHost/PlatformTerminal.h"
#include "BridgeHost/ProgramLog.h"
#include "System/DescriptorLimit.h"
#include "System/Environment.h"
#include "System/FileDescriptor.h"
#include "System/Memory.h"
#include "System/ServiceManager.h"

namespace {

using namespace velmora;

volatile std::sig_atomic_t pauseIsAsked = 0;
volatile std::sig_atomic_t endIsAsked = 0;
volatile std::sig_atomic_t wakesMainThread = -1;  // the pipe to which a signal writes

extern "C" void noteSignal(int signal) {
  const int kept = errno;
  (signal == SIGUSR1 ? pauseIsAsked : endIsAsked) = 1;
  // A full pipe wakes it as well.
  [[maybe_unused]] const auto count = ::write(wakesMainThread, "", 1);
  errno = kept;
}

// Blocked before the first thread starts, so that every thread inherits it and the main one alone receives
// them, while it waits. Returns what is blocked then.
sigset_t blockSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  // Whoever started this may ignore it, and then the system would not keep a child's exit status.
  std::signal(SIGCHLD, SIG_DFL);
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGUSR1);
  // A closed terminal or SSH session ends it as well; what nohup started goes on.
  struct sigaction hangUp {};
  if (::sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN) sigaddset(&signals, SIGHUP);
  sigset_t waiting;
  pthread_sigmask(SIG_BLOCK, &signals, &waiting);
  for (const int signal : {SIGINT, SIGTERM, SIGUSR1, SIGHUP}) {
    if (sigismember(&signals, signal) != 1) continue;
    std::signal(signal, noteSignal);
    sigdelset(&waiting, signal);  // whoever started this may have blocked it
  }
  return waiting;
}

// Whether standard input can be an MCP client's. Asked before anything else could take a free descriptor.
bool inputMayBeAClients() {
  struct stat status {};
  return ::fstat(STDIN_FILENO, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

// A client that launches this program by mistake waits for an answer that never comes. What it says stays
// unread, as it may be meant for a program that shares this input.
void sayWhichProgramIsTheServer(const Log& log) {
  int size = 0;
  if (::ioctl(STDIN_FILENO, FIONREAD, &size) != 0 || size == 0) return;
  log.error(
      "start",
      "velmora-headless is not the MCP server and reads nothing from standard input: have the MCP client "
      "launch the program velmora, and start velmora-headless by itself");
}

constexpr const char* help =
    "Usage: velmora-headless\n"
    "The bridge between AI coding agents and your terminal, without a window. It prints the path of its socket\n"
    "when it is ready, and serves until SIGINT, SIGTERM or SIGHUP; SIGUSR1 pauses it. What it has to say goes\n"
    "to standard error.\n"
    "\n"
    "  --help     Print this help\n"
    "  --version  Print the version\n";

// What the command line alone answers; nothing when the bridge is to serve.
std::optional<int> answerTo(const std::vector<std::string_view>& arguments) {
  if (arguments.empty()) return std::nullopt;
  if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h")) {
    std::fputs(help, stdout);
    return EXIT_SUCCESS;
  }
  if (arguments.size() == 1 && arguments[0] == "--version") {
    std::puts("velmora-headless " VELMORA_VERSION);
    return EXIT_SUCCESS;
  }
  std::fprintf(stderr, "velmora-headless: takes no arguments but --help and --version, not %s\n",
               quotedForLog(arguments[arguments.size() - 1]).c_str());
  return 2;
}

// A wrong pause hurts nobody, so whoever may send a signal may pause.
void pause(BridgeCoordinator& coordinator, const Log& log) {
  coordinator.setPaused(true);
  log.info("calls", "paused by a signal");
  try {
    coordinator.keepPause();
  } catch (...) {
    log.error("calls", "the pause ends with this run: " + problemSentence(std::current_exception()));
  }
}

// Waits until the end is asked for.
void waitForSignals(const sigset_t& waiting, bool hearsInput, BridgeCoordinator& coordinator,
                    const Log& log) {
  const Pipe woken = openPipe();
  setNonBlocking(woken.read);
  setNonBlocking(woken.write);
  wakesMainThread = woken.write.get();
  sigset_t blocked;
  pthread_sigmask(SIG_SETMASK, &waiting, &blocked);
  while (endIsAsked == 0) {
    std::array<pollfd, 2> heard{{{woken.read.get(), POLLIN, 0}, {hearsInput ? STDIN_FILENO : -1, POLLIN, 0}}};
    if (::poll(heard.data(), heard.size(), -1) > 0 && heard[1].revents != 0) {
      sayWhichProgramIsTheServer(log);
      hearsInput = false;
    }
    std::array<char, 64> wakes;
    while (::read(woken.read.get(), wakes.data(), wakes.size()) > 0) continue;
    if (pauseIsAsked == 0) continue;
    pauseIsAsked = 0;
    pause(coordinator, log);
  }
  pthread_sigmask(SIG_SETMASK, &blocked, nullptr);
}

int serve(const sigset_t& waiting, bool hearsInput, const Environment& environment, const Log& log) {
  std::atomic<bool> acceptsNoMore = false;
  BridgeHost host({.environment = environment,
                   .makeTerminal =
                       [&](const auto& temporaryDirectory) {
                         return makePlatformTerminal(environment, temporaryDirectory, log);
                       },
                   .acceptingEnded =
                       [&](const std::string&) {
                         acceptsNoMore = true;
                         ::kill(::getpid(), SIGTERM);
                       },
                   .log = log});
  if (host.localServer() == nullptr) {
    log.error("socket", host.socketURL().string() + ": " + host.serverProblem());
    return EXIT_FAILURE;
  }
  if (host.loadLocalState().settings) {
    // The defaults would open more than the user may have allowed, and delete a history that they may keep.
    log.error("settings",
              "velmora-headless does not run on settings that it cannot read; mend the file or remove it");
    return EXIT_FAILURE;
  }
  log.info("settings", "session policy: " +
                           std::string(wireName(host.coordinator().settingsStore().current().sessionPolicy)));
  host.startServing();
  std::cout << host.socketURL().string() << std::endl;
  try {
    tellServiceIsReady(environment);
  } catch (const std::system_error& error) {
    log.warning("start", error.what());
  }

  waitForSignals(waiting, hearsInput, host.coordinator(), log);
  host.prepareForTermination();
  return acceptsNoMore ? EXIT_FAILURE : EXIT_SUCCESS;  // a service manager starts it again then
}

}  // namespace

int main(int argc, char** argv) {
  const bool hearsInput = inputMayBeAClients();
  const auto waiting = blockSignals();
  if (const auto status = answerTo({argv + 1, argv + std::max(argc, 1)})) return *status;
  raiseDescriptorLimit();
  shareMemoryArenas();
  const auto environment = processEnvironment();
  const auto log = programLog(environment);
  try {
    return serve(waiting, hearsInput, environment, log);
  } catch (const std::exception& error) {
    log.error("start", error.what());
    return EXIT_FAILURE;
  }
}
