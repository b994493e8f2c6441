#include "VelmoraHelper/Commands/AskProgram.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "System/ChildProcess.h"
#include "System/FindProgram.h"

namespace velmora {

namespace {

constexpr std::size_t outputLimit = 65536;

}  // namespace

ProgramAnswer askProgram(const std::vector<std::string>& command, const Environment& environment,
                         std::chrono::milliseconds deadline) {
  const auto path = findProgram(command.front(), environment);
  if (!path) return {};
  ChildProcessRunner runner;
  auto result = runner.run({.program = *path,
                            .arguments = {command.begin() + 1, command.end()},
                            .environment = environmentList(environment),
                            .deadline = std::chrono::steady_clock::now() + deadline,
                            .outputLimit = outputLimit});
  if (result.end == ChildResult::End::notStarted) return {};
  const bool exited = result.end == ChildResult::End::exited;
  return {.end = exited ? ProgramAnswer::End::exited : ProgramAnswer::End::killed,
          .exitStatus = result.exitStatus,
          .output = std::move(result.output),
          .errors = std::move(result.errorOutput),
          .path = *path};
}

}  // namespace velmora
