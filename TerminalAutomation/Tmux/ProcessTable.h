// What the system knows of the program in a pane. One .cpp file per platform.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

struct ProcessState {
  std::string name{};  ///< Of the executable, without its folder.
  pid_t parent = 0;
  pid_t group = 0;
  pid_t foregroundGroup = 0;    ///< The group that its terminal listens to.
  bool running = false;         ///< On the processor or waiting for it, not for an event.
  std::int64_t startTicks = 0;  ///< When it started, as the system counts; 0 where it does not tell.

  bool operator==(const ProcessState&) const = default;
};

/// What a terminal does with what is typed.
struct TerminalMode {
  bool collectsLines = false;  ///< It collects whole lines itself (ICANON), which line editors switch off.
  /// A program edits a line, as at a shell's prompt. A question that a shell asks for one key ("delete all 5
  /// files?"), and a key that is being quoted, look different.
  bool editsLine = false;
  bool hidesLine = false;  ///< It collects a line and does not show it: a program asks for a secret.

  bool operator==(const TerminalMode&) const = default;
};

/// Implementations are thread-safe and answer "nothing" rather than fail.
class ProcessTable {
 public:
  virtual ~ProcessTable() = default;

  /// Nothing of a process that has ended, also while its parent has not yet taken notice (a tmux server may
  /// be long about it), and of one that cannot be looked at.
  virtual std::optional<ProcessState> state(pid_t process) const = 0;

  /// Whether it has surely ended, also while its parent has not yet taken notice: false when the system
  /// cannot tell, for want of memory or descriptors.
  virtual bool hasEnded(pid_t process) const = 0;

  /// Its argument vector; empty when it cannot be read.
  virtual std::vector<std::string> arguments(pid_t process) const = 0;

  virtual std::optional<TerminalMode> terminalMode(const std::string& tty) const = 0;

  /// How many bytes of a line a terminal keeps that collects it; it drops what is beyond them.
  virtual std::size_t longestCollectedLine() const = 0;
};

/// The system's own table.
std::unique_ptr<ProcessTable> systemProcessTable();

/// The parts that the platforms share. This one asks the terminal itself.
std::optional<TerminalMode> systemTerminalMode(const std::string& tty);

/// Whether nothing has that number any more, not even a process that waits for its parent. Takes no
/// descriptor.
bool isNoProcess(pid_t process);

}  // namespace velmora
