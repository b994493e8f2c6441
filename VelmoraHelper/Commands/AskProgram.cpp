#include "VelmoraHelper/Commands/AskProgram.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "TerminalAutomation/ChildProcess.h"
#include "TerminalAutomation/FindProgram.h"

namespace velmora {

namespace {

constexpr std::size_t outputLimit = 65536;

}  // namespace

ProgramAnswer askProgram(const std::vector<std::string>& command, const Environment& environment,
                         std::chrono::milliseconds deadline) {
  const auto path = findProgram(command.front(), environment);
  if (!path) return {};
  std::vector<std::string> variables;
  variables.reserve(environment.size());
  for (const auto& [name, value] : environment) variables.push_back(name + "=" + value);
  ChildProcessRunner runner;
  auto result = runner.run({.program = *path,
                            .arguments = {command.begin() + 1, command.end()},
                            .environment = std::move(variables),
                            .deadline = std::chrono::steady_clock::now() + deadline,
                            .outputLimit = outputLimit});
  if (result.end == ChildResult::End::notStarted) return {};
  const bool exited = result.end == ChildResult::End::exited;
  return {.end = exited ? ProgramAnswer::End::exited : ProgramAnswer::End::killed,
          .exitStatus = result.exitStatus,
          .output = std::move(result.output),
          .path = *path};
}

}  // namespace velmora
