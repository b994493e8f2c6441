// Asks another program something, such as its version.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "System/Environment.h"

namespace velmora {

struct ProgramAnswer {
  enum class End {
    exited,
    killed,    ///< It took too long, or said more than 64 KB.
    notFound,  ///< Or it could not be started.
  };

  End end = End::notFound;
  int exitStatus = 0;            ///< As a shell reports it. `exited` only.
  std::string output{};          ///< What it wrote to standard output.
  std::string errors{};          ///< And to standard error.
  std::filesystem::path path{};  ///< The program's file. Empty when there is none.
};

/// Runs a command: the program's name, then its arguments.
using ProgramAsking = std::function<ProgramAnswer(const std::vector<std::string>& command)>;

/// Runs `command` without standard input, for as long as `deadline` allows. Throws std::system_error when the
/// system has no descriptors left.
ProgramAnswer askProgram(const std::vector<std::string>& command, const Environment& environment,
                         std::chrono::milliseconds deadline);

}  // namespace velmora
