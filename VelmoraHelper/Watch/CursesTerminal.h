// The terminal that `velmora watch` runs on, through the terminal library: nothing else of this program knows
// of it. The library sends what changed between two screens, so nothing flickers.
#pragma once

#include <memory>
#include <stdexcept>

#include "System/Environment.h"
#include "VelmoraHelper/Watch/WatchScreen.h"

namespace velmora {

/// The terminal cannot show a screen. Its text says why and what to do.
class UnusableTerminal : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Standard input and output, from construction to destruction. One at a time; belongs to the main thread.
/// Draws in colour unless the terminal has none or NO_COLOR is set and not empty.
class CursesTerminal {
 public:
  /// Throws UnusableTerminal.
  explicit CursesTerminal(const Environment& environment);
  ~CursesTerminal();
  CursesTerminal(const CursesTerminal&) = delete;
  CursesTerminal& operator=(const CursesTerminal&) = delete;

  WatchSize size() const;
  void draw(const WatchScreen& screen);
  /// Draws everything anew at the next `draw`.
  void forgetWhatIsShown();

  /// A key that was pressed; `none` when there is nothing more to read.
  WatchInput read();

  /// Hands the terminal back to the shell's ways until `takeBack`.
  void handOver();
  void takeBack();

 private:
  struct Library;
  const std::unique_ptr<Library> library_;
};

}  // namespace velmora
