// What the tmux adapter is built from.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "BridgeModels/Uuid.h"
#include "TerminalAutomation/Tmux/DesktopTerminal.h"
#include "TerminalAutomation/Tmux/Picture/PanePicture.h"
#include "TerminalAutomation/Tmux/ProcessTable.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

struct TmuxExecutorOptions {
  Environment environment{};                          ///< The bridge's own.
  std::optional<std::filesystem::path> socketPath{};  ///< Else that of $TMUX, else tmux's default.
  std::optional<std::filesystem::path> program{};     ///< Else tmux in $PATH.
  std::filesystem::path temporaryDirectory{};         ///< Pictures go to Velmora/ in it.
  std::filesystem::path homeDirectory{};              ///< Where new sessions start; empty: $HOME.
  UuidSource uuid = Uuid::random;
  std::chrono::milliseconds deadline{5'000};               ///< Of one operation.
  std::chrono::milliseconds historyDeadline{30'000};       ///< Of reading a whole history.
  std::function<void(std::chrono::milliseconds)> sleep{};  ///< Empty: the system's.
};

/// What the adapter works with; tests put their own in place.
struct TmuxParts {
  std::unique_ptr<TmuxTransport> transport;
  std::unique_ptr<ProcessTable> processes;
  std::unique_ptr<DesktopTerminal> desktop;
  std::function<std::string(const PaneScreen&)> drawPicture;

  static TmuxParts ofSystem(const TmuxExecutorOptions& options);
};

}  // namespace velmora
