// What the commands of `velmora` work with. Only `main` knows the real ones.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "VelmoraHelper/Bridge/BridgeMessages.h"
#include "VelmoraHelper/Commands/AskProgram.h"

namespace velmora {

/// The exit statuses of every command.
enum class ExitStatus {
  success = 0,
  failure = 1,  ///< The call was refused, or something is wrong.
  usage = 2,    ///< The command line is wrong; nothing was done.
};

/// Makes a call and waits for its answer; one that does not come in time is an answer too.
using BridgeCalling = std::function<BridgeAnswer(BridgeRequest, std::chrono::seconds deadline)>;

/// Belongs to one thread. None of its functions blocks for longer than its deadline.
struct CommandContext {
  std::istream& in;
  std::ostream& out;  ///< What was asked for.
  std::ostream& err;  ///< What went wrong, and hints.
  std::string version;
  std::filesystem::path program;    ///< This program's own absolute path.
  std::filesystem::path socketURL;  ///< Where the application should listen.
  std::filesystem::path settings;   ///< The file of its settings; empty when there is no place for one.
  /// Connects to the application, and nothing else; returns where it listens. Throws UnixSocketError.
  std::function<std::filesystem::path()> connect;
  BridgeCalling call;
  ProgramAsking askProgram;
};

}  // namespace velmora
