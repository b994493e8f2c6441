#include "TerminalAutomation/AppleScript/ProgramRunner.h"

#include <system_error>

namespace velmora {

SystemProgramRunner::SystemProgramRunner(const Environment& environment, std::chrono::milliseconds longest)
    : environment_(environmentList(environment)), longest_(longest) {}

int SystemProgramRunner::run(const std::string& program, const std::vector<std::string>& arguments) {
  constexpr std::size_t outputLimit = std::size_t{1} << 20;
  const auto result = children_.run({.program = program,
                                     .arguments = arguments,
                                     .environment = environment_,
                                     .deadline = std::chrono::steady_clock::now() + longest_,
                                     .outputLimit = outputLimit});
  if (result.end == ChildResult::End::notStarted) {
    throw std::system_error(result.startError, std::generic_category(), program);
  }
  return result.exitStatus;
}

}  // namespace velmora
