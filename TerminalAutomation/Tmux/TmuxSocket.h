// Which tmux server is the user's, and whether its socket may be trusted.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "System/Environment.h"

namespace velmora {

/// The configured path, else that of $TMUX, else tmux's default: tmux-UID/default below $TMUX_TMPDIR or /tmp.
std::filesystem::path chooseTmuxSocket(const std::optional<std::filesystem::path>& configured,
                                       const Environment& environment);

/// What is wrong with the socket, in a sentence, or nothing. Whoever can put a socket in place of tmux's is
/// handed everything that is typed, so the folder and the socket must be the user's own and nobody else may
/// write to the folder. A socket or a folder that does not exist is not wrong.
std::optional<std::string> tmuxSocketDefect(const std::filesystem::path& socket);

/// Makes the socket's folder for its owner alone, as tmux does for its default one.
void makeTmuxSocketFolder(const std::filesystem::path& socket);

}  // namespace velmora
