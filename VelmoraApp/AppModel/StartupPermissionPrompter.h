// The four permissions that the application asks the system for when it starts.
#pragma once

#include <functional>

#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Each request can be replaced. The first two run on the main thread and must not wait for the person; the
/// other two wait for the terminal on a thread of their own, and what they throw is dropped. No answer is
/// kept: the screens show what the bridge finds.
struct StartupPermissionPrompter {
  std::function<bool()> requestAccessibility;
  std::function<bool()> requestScreenCapture;
  std::function<void(TerminalAutomating&)> requestTerminalAutomation;
  std::function<void(TerminalAutomating&)> requestSystemEventsAutomation;

  /// The requests of the system that this build is for.
  static StartupPermissionPrompter platform();
};

}  // namespace velmora
