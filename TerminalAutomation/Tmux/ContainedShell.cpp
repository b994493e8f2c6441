#include "TerminalAutomation/Tmux/ContainedShell.h"

#include <algorithm>
#include <array>

#include "System/ChildProcess.h"
#include "System/FindProgram.h"
#include "TerminalAutomation/Tmux/TmuxErrors.h"

namespace velmora {

namespace {

constexpr auto longestProof = std::chrono::seconds(5);
// tmux names its default shell there. A login shell, as tmux itself starts it.
constexpr auto startShell = "exec \"${SHELL:-/bin/sh}\" -l";

void add(std::vector<std::string>& words, const std::vector<std::string>& more) {
  words.insert(words.end(), more.begin(), more.end());
}

// tmux makes it for its sockets alone.
bool isSocketFolder(const std::filesystem::path& folder) {
  return folder.filename().native().starts_with("tmux-");
}

}  // namespace

std::vector<std::string> containing(const std::filesystem::path& bubblewrap, const ContainedFrom& from) {
  std::vector<std::string> words{
      bubblewrap.string(), "--bind",     "/",  "/", "--dev", "/dev", "--proc", "/proc",
      "--unshare-pid",     "--cap-drop", "ALL"};
  auto folders = from.folders;
  std::error_code ignored;
  if (isSocketFolder(from.tmuxSocket.parent_path())) {
    folders.push_back(from.tmuxSocket.parent_path());
  } else if (!from.tmuxSocket.empty()) {
    add(words, {"--ro-bind", "/dev/null", from.tmuxSocket.string()});
  }
  for (const auto& folder : folders) {
    if (std::filesystem::is_directory(folder, ignored)) add(words, {"--tmpfs", folder.string()});
  }
  for (const auto* name : {"TMUX", "TMUX_PANE", "DBUS_SESSION_BUS_ADDRESS"}) add(words, {"--unsetenv", name});
  words.emplace_back("--");
  return words;
}

std::vector<std::string> containedShell(const Environment& environment, const ContainedFrom& from,
                                        std::chrono::steady_clock::time_point deadline) {
  const auto bubblewrap = findProgram("bwrap", environment);
  if (!bubblewrap) throw tmuxError::cannotContain("bubblewrap is not installed");
  auto words = containing(*bubblewrap, from);
  // A socket that tmux has yet to make must not be there before.
  auto early = from;
  std::error_code ignored;
  if (!std::filesystem::exists(from.tmuxSocket, ignored)) early.tmuxSocket.clear();
  auto proof = containing(*bubblewrap, early);
  proof.erase(proof.begin());
  proof.emplace_back("/bin/true");
  const auto result = ChildProcessRunner().run(
      {.program = *bubblewrap,
       .arguments = std::move(proof),
       .environment = {},
       .deadline = std::min(deadline, std::chrono::steady_clock::now() + longestProof),
       .outputLimit = 4096,
       .ownSession = true});
  if (result.end != ChildResult::End::exited || result.exitStatus != 0)
    throw tmuxError::cannotContain(result.errorOutput.empty() ? "bubblewrap did not start"
                                                              : result.errorOutput);
  add(words, {"/bin/sh", "-c", startShell});
  return words;
}

}  // namespace velmora
