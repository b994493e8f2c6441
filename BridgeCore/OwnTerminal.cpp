#include "BridgeCore/OwnTerminal.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "BridgeModels/StructuredError.h"

namespace velmora {

namespace {

// No real chain of parents is as long; a table that changes meanwhile could show a ring.
constexpr int mostParents = 1'000;

StructuredError refused(const std::string& reason) {
  return {
      .code = ErrorCode::sessionNotAllowed,
      .message = "This gives agents more, which takes a terminal of your own: " + reason + ".",
      .recoverySuggestion =
          "Run it in a terminal outside tmux and outside the tabs that Velmora lists, such as another SSH "
          "login or terminal window, or use Velmora's window."};
}

bool isMultiplexer(std::string_view program) {
  constexpr std::array<std::string_view, 2> names{"tmux", "screen"};
  return std::find(names.begin(), names.end(), program) != names.end();
}

}  // namespace

std::filesystem::path ownTerminalOf(pid_t process, const ProcessLookup& lookUp,
                                    const std::set<std::string>& driven) {
  const auto first = lookUp(process);
  if (!first) throw refused("the process that asks cannot be looked at");
  if (!first->terminal) throw refused("the command runs without one");
  auto current = first;
  pid_t parent = process;
  for (int parents = 0; parents < mostParents; ++parents) {
    if (current->terminal && driven.contains(current->terminal->string()))
      throw refused("agents can type into the one where the command was started");
    if (isMultiplexer(current->name)) throw refused("the command runs inside " + current->name);
    parent = current->parent;
    if (parent <= 1) return *first->terminal;
    current = lookUp(parent);
    if (!current) throw refused("a process that the command was started by has just ended");
  }
  throw refused("the processes that the command was started by have no end");
}

}  // namespace velmora
