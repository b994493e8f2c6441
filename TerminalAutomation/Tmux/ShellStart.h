// How a new session's shell gets Velmora's integration without a file of the user's being touched.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// A tmux command, as its words; nothing is quoted yet.
using TmuxWords = std::vector<std::string>;

/// The commands as arguments of the tmux program.
std::vector<std::string> tmuxArguments(const std::vector<TmuxWords>& commands);

/// The commands as one text that tmux reads as commands.
std::string tmuxText(const std::vector<TmuxWords>& commands);

/// Writes what the shells read at their start to a folder of the bridge's in `runtimeFolder` and returns it,
/// after it has made the folder of the shells' records. Nothing when that is impossible, or when the path
/// could not stand among tmux's words and the shells' variables as it is. Any thread.
std::optional<std::filesystem::path> writeShellStart(const std::filesystem::path& runtimeFolder);

/// Makes the folder of the shells' records. Nothing is thrown; without it there are none.
void makeShellRecordFolder(const std::filesystem::path& runtimeFolder) noexcept;

/// Arguments of the tmux program that open a session, with the integration for a bash, zsh or fish that tmux
/// starts by itself (`default-command` is empty), else just as `commands` would. The first of these is the
/// new-session, `target` what finds its session later. The server decides, since only it knows its options.
/// How the shell is started stays as it is, and the variables that it takes are gone from the session at
/// once; fish is told by its arguments.
std::vector<std::string> withShellIntegration(const std::vector<TmuxWords>& commands,
                                              const std::string& target,
                                              const std::filesystem::path& startFolder);

}  // namespace velmora
