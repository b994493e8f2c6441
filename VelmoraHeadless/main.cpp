// The bridge without a window. It takes no arguments, prints one line (the socket's path) when it is ready,
// and serves until SIGINT or SIGTERM. Diagnostics go to stderr.

#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>

#include <csignal>
#include <cstdio>
#include <iostream>

#include "BridgeHost/BridgeHost.h"
#include "BridgeHost/PlatformTerminal.h"
#include "System/Environment.h"

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
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

int serve(const sigset_t& signals) {
  const auto environment = processEnvironment();
  BridgeHost host({.environment = environment, .makeTerminal = [&](const auto& temporaryDirectory) {
                     return makePlatformTerminal(environment, temporaryDirectory);
                   }});
  if (host.localServer() == nullptr) {
    spdlog::error("The socket {} could not be made: {}.", host.socketURL().string(), host.serverProblem());
    return EXIT_FAILURE;
  }
  const auto problems = host.coordinator().loadLocalState();
  if (problems.settings) {
    // The defaults would open more than the person may have allowed, and delete a history that they may keep.
    spdlog::error("The settings in {} could not be loaded: {}. Mend the file or remove it.",
                  host.coordinator().settingsStore().fileURL().string(), *problems.settings);
    return EXIT_FAILURE;
  }
  if (problems.history) spdlog::warn("The history could not be loaded: {}", *problems.history);
  host.startServing();
  std::cout << host.socketURL().string() << std::endl;

  int received = 0;
  sigwait(&signals, &received);
  host.prepareForTermination();
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  const auto signals = blockTerminationSignals();
  spdlog::set_default_logger(spdlog::stderr_color_mt("velmora-headless"));
  if (argc > 1) {
    std::fprintf(stderr, "%s: takes no arguments; it serves until SIGINT or SIGTERM\n", argv[0]);
    return 2;
  }
  try {
    return serve(signals);
  } catch (const std::exception& error) {
    spdlog::critical("{}", error.what());
    return EXIT_FAILURE;
  }
}
