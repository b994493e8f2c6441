#include "VelmoraHelper/Watch/EndingSignals.h"

#include <curses.h>
#include <term.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string>

#include "VelmoraHelper/Watch/Capability.h"

namespace velmora {

namespace {

constexpr std::array endingSignals{SIGHUP, SIGINT, SIGQUIT, SIGTERM};

// What the handler reads; none of it changes while the screen is taken.
volatile std::sig_atomic_t isTaken = 0;
bool hasFormerModes = false;
termios formerModes{};
std::string restoring;

// Calls only what POSIX allows in a handler.
void giveTerminalBackAndEnd(int signal) {
  if (isTaken != 0) {
    [[maybe_unused]] const auto count = ::write(STDOUT_FILENO, restoring.data(), restoring.size());
    if (hasFormerModes) ::tcsetattr(STDIN_FILENO, TCSANOW, &formerModes);
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

int keepByte(int byte) {
  restoring.push_back(static_cast<char>(byte));
  return byte;
}

void keep(const char* sequence) {
  if (sequence != nullptr) ::tputs(sequence, 1, keepByte);
}

}  // namespace

EndingSignals::EndingSignals() {
  hasFormerModes = ::tcgetattr(STDIN_FILENO, &formerModes) == 0;
  for (const int signal : endingSignals) {
    if (std::signal(signal, giveTerminalBackAndEnd) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

void EndingSignals::screenIsTaken() {
  if (restoring.empty()) {
    for (const auto* name : {"sgr0", "op", "rmkx", "cnorm"}) keep(capability(name));
    // Where the screen is no other one than the shell's, the prompt comes below what was drawn.
    if (const auto* position = capability("cup")) keep(::tparm(position, LINES - 1, 0));
    keep(capability("rmcup"));
    restoring.push_back('\r');
  }
  isTaken = 1;
}

void EndingSignals::screenIsGivenBack() { isTaken = 0; }

}  // namespace velmora
