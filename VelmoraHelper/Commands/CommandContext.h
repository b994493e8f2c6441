// What the commands of `velmora` work with. Only `main` knows the real ones.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BridgeModels/Date.h"
#include "System/Environment.h"
#include "System/FileSystem.h"
#include "System/RunningProcess.h"
#include "VelmoraHelper/Bridge/BridgeMessages.h"
#include "VelmoraHelper/Commands/AskProgram.h"
#include "VelmoraHelper/Commands/PersonCalls.h"

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
  /// A connection of its own to the bridge's channel for users.
  std::function<std::unique_ptr<PersonCalling>()> person{};
  /// Asks for a line at the user's terminal, whatever the standard streams are, and waits for it; nothing
  /// when there is no terminal or nobody typed in time.
  std::function<std::optional<std::string>(const std::string& prompt, std::chrono::seconds patience)>
      askUser{};
  /// Puts the screen of `velmora watch` in this program's place; returns only when it cannot, with the
  /// reason.
  std::function<std::string()> becomeWatchScreen{};
  Clock now = Date::now;
  Environment environment{};
  std::shared_ptr<FileSystem> files = std::make_shared<PosixFileSystem>();
  /// Runs a program that takes its time, such as a client's own command.
  ProgramAsking runProgram{};
  /// The process that listens at the socket; nothing when nobody does.
  std::function<std::optional<pid_t>()> bridgeProcess{};
  std::function<std::optional<RunningProcess>(pid_t)> processNamed = runningProcess;
  /// What this user can still write at a place, in bytes; nothing when that is not known.
  std::function<std::optional<std::uintmax_t>(const std::filesystem::path&)> roomAt{};
  /// The tmux servers that answer where tmux usually puts their sockets, and beside the bridge's.
  std::function<std::vector<std::filesystem::path>(const std::filesystem::path& ofBridge)> tmuxServers{};
};

}  // namespace velmora
