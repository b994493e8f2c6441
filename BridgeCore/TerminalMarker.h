// Keeps what the terminal shows of the bridge up to date: whether it is paused, where an agent types, what
// each tab permits. Only while the setting asks for it, and only what has changed.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include "BridgeCore/BridgeOperationState.h"
#include "BridgeCore/SessionRegistry.h"
#include "System/Mutex.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// Thread-safe; nothing of it waits for the terminal but `end` and destruction, and those two seconds at
/// most. A thread of its own speaks to the terminal, from the first time that it is switched on. The
/// terminal, the registry and the state must outlive it.
class TerminalMarker {
 public:
  /// So long after an agent's last input it counts as typing.
  static constexpr std::chrono::seconds typingLasts{5};

  TerminalMarker(TerminalAutomating& terminal, SessionRegistry& registry, BridgeOperationState& state)
      : terminal_(terminal), registry_(registry), state_(state) {}
  ~TerminalMarker() { end(); }
  TerminalMarker(const TerminalMarker&) = delete;
  TerminalMarker& operator=(const TerminalMarker&) = delete;

  void use(bool on);
  /// Something may have changed that is shown.
  void look();
  void agentTypes(const Uuid& session);
  /// Takes away what is shown, and shows nothing more.
  void end() noexcept;

 private:
  using SteadyTime = std::chrono::steady_clock::time_point;

  void run();
  TerminalMarks wanted(const std::optional<Uuid>& typedInto);

  TerminalAutomating& terminal_;
  SessionRegistry& registry_;
  BridgeOperationState& state_;

  Mutex mutex_;
  std::condition_variable_any changed_;
  bool isOn_ VELMORA_GUARDED_BY(mutex_) = false;
  bool hasEnded_ VELMORA_GUARDED_BY(mutex_) = false;
  bool isNew_ VELMORA_GUARDED_BY(mutex_) = false;
  std::optional<Uuid> typedInto_ VELMORA_GUARDED_BY(mutex_){};
  SteadyTime typingEnds_ VELMORA_GUARDED_BY(mutex_){};
  std::thread thread_ VELMORA_GUARDED_BY(mutex_);
};

}  // namespace velmora
