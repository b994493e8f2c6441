// What is to happen when a library ends the process, as those of the display do when they lose it.
#pragma once

#include <functional>

namespace velmora {

/// One at a time. While it lives, an `exit` that does not come from the end of `main` calls `leave` and then
/// ends the process as failed at once: everything still stands then, and no destructor of another thread's
/// things runs. Nothing helps against `_exit`.
class ExitHandler {
 public:
  explicit ExitHandler(std::function<void()> leave);
  ~ExitHandler();
  ExitHandler(const ExitHandler&) = delete;
  ExitHandler& operator=(const ExitHandler&) = delete;
};

}  // namespace velmora
