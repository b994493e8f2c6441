// The adapter that drives tmux, and what it is built from: a window is a tmux window, a tab is a pane.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "BridgeModels/Date.h"
#include "BridgeModels/Uuid.h"
#include "System/Log.h"
#include "TerminalAutomation/SerialTerminal.h"
#include "TerminalAutomation/Tmux/DesktopTerminal.h"
#include "TerminalAutomation/Tmux/Direct/TmuxSocketTransport.h"
#include "TerminalAutomation/Tmux/Picture/PanePicture.h"
#include "TerminalAutomation/Tmux/ProcessTable.h"
#include "TerminalAutomation/Tmux/TmuxTransport.h"

namespace velmora {

struct TmuxOptions {
  Environment environment{};                          ///< The bridge's own.
  std::optional<std::filesystem::path> socketPath{};  ///< Else that of $TMUX, else tmux's default.
  std::optional<std::filesystem::path> program{};     ///< Else tmux in $PATH.
  std::optional<std::string> controlGroups{};         ///< Else ownControlGroups().
  TmuxTransportChoice transport = TmuxTransportChoice::automatic;
  Log log{};
  std::filesystem::path temporaryDirectory{};  ///< The runtime folder. Pictures go to Velmora/ in it.
  std::function<std::filesystem::path()> runtimeFolder{};  ///< The one by now; empty: temporaryDirectory.
  /// The bridge's and the user's session's, which contained windows lack.
  std::vector<std::filesystem::path> ownFolders{};
  std::filesystem::path homeDirectory{};  ///< Where new sessions start; empty: $HOME, else "/".
  UuidSource uuid = Uuid::random;
  Clock now = Date::now;
  TerminalDeadlines deadlines{};
  std::function<void(std::chrono::milliseconds)> sleep = [](std::chrono::milliseconds pause) {
    std::this_thread::sleep_for(pause);
  };
};

/// What the adapter works with; tests put their own in place.
struct TmuxParts {
  std::unique_ptr<TmuxTransport> transport;
  std::unique_ptr<ProcessTable> processes;
  std::unique_ptr<DesktopTerminal> desktop;
  std::function<std::string(const PaneScreen&)> drawPicture;
  /// The command of a contained window, or a StructuredError.
  std::function<std::vector<std::string>(std::chrono::steady_clock::time_point deadline)> containedCommand{};

  static TmuxParts ofSystem(const TmuxOptions& options);
};

/// TmuxOperations in a SerialTerminal. Destruction ends what is under way at once.
std::unique_ptr<SerialTerminal> makeTmuxTerminal(TmuxOptions options, TmuxParts parts);
std::unique_ptr<SerialTerminal> makeTmuxTerminal(const TmuxOptions& options);

}  // namespace velmora
