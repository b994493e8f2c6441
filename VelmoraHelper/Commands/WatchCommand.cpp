#include "VelmoraHelper/Commands/WatchCommand.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <ostream>

#include "VelmoraHelper/Commands/CallCommand.h"
#include "VelmoraHelper/Commands/HistoryCommand.h"
#include "VelmoraHelper/Commands/PersonCalls.h"

namespace velmora {

ExitStatus watchRequests(const CommandContext& context, bool json) {
  const auto calls = context.person();
  while (true) {
    const auto answer = askPerson<PersonEvents>(*calls, PersonVerb::events);
    if (answer.error) {
      explain(context, *answer.error);
      return ExitStatus::failure;
    }
    if (answer.payload.missed > 0)
      context.err << "velmora: " << answer.payload.missed << " requests came too fast to be shown\n";
    for (const auto& request : answer.payload.requests)
      context.out << (json ? encodeJson(request, JsonFormat::people) : lineOf(request)) << '\n';
    context.out.flush();
    if (!context.out) return ExitStatus::failure;  // nobody reads any more
  }
}

ExitStatus showWatchScreen(const CommandContext& context) {
  const auto problem = context.becomeWatchScreen();
  context.err << "velmora watch: " << problem << '\n';
  return ExitStatus::failure;
}

std::optional<std::filesystem::path> watchScreenProgram(const std::filesystem::path& runningFile) {
  const auto folder = runningFile.parent_path();
  for (const auto& place :
       {folder / "velmora-watch", folder.parent_path() / "libexec" / "velmora" / "velmora-watch"}) {
    if (::access(place.c_str(), X_OK) == 0) return place;
  }
  return std::nullopt;
}

std::string becomeWatchScreen(const std::filesystem::path& runningFile) {
  if (::isatty(STDIN_FILENO) != 1 || ::isatty(STDOUT_FILENO) != 1)
    return "standard input or output is no terminal; `velmora watch --plain` prints lines";
  const auto program = watchScreenProgram(runningFile);
  if (!program) return "its screen, velmora-watch, is not installed; `velmora watch --plain` prints lines";
  auto name = program->string();
  std::array<char*, 2> arguments{name.data(), nullptr};
  ::execv(name.c_str(), arguments.data());
  return name + ": " + std::strerror(errno);
}

}  // namespace velmora
