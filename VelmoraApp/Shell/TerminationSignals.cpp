#include "VelmoraApp/Shell/TerminationSignals.h"

#include <unistd.h>

#include <csignal>

#include "System/FileDescriptor.h"

namespace velmora {

namespace {

// A signal handler may only touch what never goes away: the pipe lives as long as the process.
Pipe& signalPipe() {
  static auto pipe = openPipe();
  return pipe;
}

int writeEnd = -1;

void handle(int signal) {
  const char byte = signal == SIGUSR1 ? 'p' : 'e';
  [[maybe_unused]] const auto written = ::write(writeEnd, &byte, 1);
}

}  // namespace

TerminationSignals::TerminationSignals() : notifier_(signalPipe().read.get(), QSocketNotifier::Read) {
  writeEnd = signalPipe().write.get();
  connect(&notifier_, &QSocketNotifier::activated, this, [this] {
    char byte = 0;
    if (::read(signalPipe().read.get(), &byte, 1) != 1) return;
    if (byte == 'p') {
      Q_EMIT pauseAsked();
    } else {
      Q_EMIT received();
    }
  });
  std::signal(SIGPIPE, SIG_IGN);
  // If our parent ignored it, so would we, and the system would not keep a child's exit status.
  std::signal(SIGCHLD, SIG_DFL);
  std::signal(SIGINT, handle);
  std::signal(SIGTERM, handle);
  std::signal(SIGUSR1, handle);
  // The terminal or the SSH session that it was started from has closed. Under nohup that is nothing to it.
  if (std::signal(SIGHUP, handle) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
}

}  // namespace velmora
