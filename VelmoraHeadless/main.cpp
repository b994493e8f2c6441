// The bridge without a window. It takes no arguments but --help and --version, prints one line (the socket's
// path) when it is ready, and serves until SIGINT, SIGTERM or SIGHUP. What it has to say of itself goes to
// stderr.

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string_view>
#include <vector>

#include "BridgeHost/BridgeHost.h"
#include "BridgeHost/PlatformTerminal.h"
#include "BridgeHost/ProgramLog.h"
#include "System/DescriptorLimit.h"
#include "System/Environment.h"
#include "System/Memory.h"

namespace {

using namespace velmora;

// Blocked before the first thread starts, so that every thread inherits it and `sigwait` alone receives them.
sigset_t blockTerminationSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  // Whoever started this may ignore it, and then the system would not keep a child's exit status.
  std::signal(SIGCHLD, SIG_DFL);
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  // A closed terminal or SSH session ends it as well; what nohup started goes on.
  struct sigaction hangUp {};
  if (::sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN) sigaddset(&signals, SIGHUP);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

constexpr const char* help =
    "Usage: velmora-headless\n"
    "The bridge between AI coding agents and your terminal, without a window. It prints the path of its socket\n"
    "when it is ready, and serves until SIGINT, SIGTERM or SIGHUP; what it has to say goes to standard error.\n"
    "\n"
    "  --help     Print this help\n"
    "  --version  Print the version\n";

// What the command line alone answers; nothing when the bridge is to serve.
std::optional<int> answerTo(const std::vector<std::string_view>& arguments) {
  if (arguments.empty()) return std::nullopt;
  if (arguments.size() == 1 && arguments[0] == "--help") {
    std::fputs(help, stdout);
    return EXIT_SUCCESS;
  }
  if (arguments.size() == 1 && arguments[0] == "--version") {
    std::puts("velmora-headless " VELMORA_VERSION);
    return EXIT_SUCCESS;
  }
  std::fputs("velmora-headless: takes no arguments but --help and --version\n", stderr);
  return 2;
}

int serve(const sigset_t& signals, const Environment& environment, const Log& log) {
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

  int received = 0;
  sigwait(&signals, &received);
  host.prepareForTermination();
  return acceptsNoMore ? EXIT_FAILURE : EXIT_SUCCESS;  // a service manager starts it again then
}

}  // namespace

int main(int argc, char** argv) {
  const auto signals = blockTerminationSignals();
  if (const auto status = answerTo({argv + 1, argv + std::max(argc, 1)})) return *status;
  raiseDescriptorLimit();
  shareMemoryArenas();
  const auto environment = processEnvironment();
  const auto log = programLog(environment);
  try {
    return serve(signals, environment, log);
  } catch (const std::exception& error) {
    log.error("start", error.what());
    return EXIT_FAILURE;
  }
}
