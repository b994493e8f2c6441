// The four permissions that the application asks the system for when it starts.
#pragma once

#include <functional>

#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Each request can be replaced; by default none is needed. The first two run on the main thread and must not
/// wait for the user; the other two wait for the terminal on a thread of their own, and what they throw is
/// dropped. No answer is kept: the screens show what the bridge finds.
struct StartupPermissionPrompter {
  std::function<bool()> requestAccessibility = [] { return true; };
  std::function<bool()> requestScreenCapture = [] { return true; };
  std::function<void(TerminalAutomating&)> requestTerminalAutomation = [](TerminalAutomating&) {};
  std::function<void(TerminalAutomating&)> requestSystemEventsAutomation = [](TerminalAutomating&) {};
};

}  // namespace velmora
