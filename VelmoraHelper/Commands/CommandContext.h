// What the commands for people work with. Only `main` knows the real ones.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "VelmoraHelper/Bridge/ToolCaller.h"
#include "VelmoraHelper/Commands/AskProgram.h"

namespace velmora {

/// The exit statuses of every command.
enum class ExitStatus {
  success = 0,
  failure = 1,  ///< The call was refused, or something is wrong.
  usage = 2,    ///< The command line makes no sense; nothing was done.
};

/// Sends a request to the application. Throws what BridgeCalling says, and DeadlinePassed.
using DeadlineCalling =
    std::function<LocalControlResponse(const LocalControlRequest&, std::chrono::milliseconds deadline)>;

/// Belongs to one thread. None of its functions blocks for longer than its deadline.
struct CommandContext {
  std::istream& in;
  std::ostream& out;  ///< What was asked for.
  std::ostream& err;  ///< What went wrong, and hints.
  std::string version;
  std::filesystem::path program;    ///< This program's own absolute path.
  std::filesystem::path socketURL;  ///< Where the application should listen.
  /// Connects to the application, and nothing else. Throws UnixSocketError, DeadlinePassed.
  std::function<void()> connect;
  DeadlineCalling bridge;
  ProgramAsking askProgram;
};

}  // namespace velmora
