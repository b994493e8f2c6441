// The signals that end `velmora watch`, and what they leave behind.
#pragma once

namespace velmora {

/// SIGHUP, SIGINT, SIGQUIT and SIGTERM give the terminal back before they end the program, at whatever moment
/// they come: all that has to be written is made beforehand, since a handler may call neither the terminal
/// library nor the heap. One that is ignored at the start stays ignored.
///
/// Made before the terminal library changes the terminal, whose own handlers it keeps away, and destroyed
/// after that has ended. One at a time; belongs to the main thread.
class EndingSignals {
 public:
  EndingSignals();
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

  /// The library knows the terminal and has taken the screen.
  void screenIsTaken();
  /// The screen belongs to the shell again: nothing is written to it.
  void screenIsGivenBack();
};

}  // namespace velmora
